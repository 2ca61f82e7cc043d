#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/pooled.h"
#include "base/ref.h"

namespace kelmora {

// A string value's bytes with what table look-up wants to know of them, worked out once.
class StringObject : public RefCounted, public Pooled<StringObject> {
public:
    explicit StringObject(std::string text) : text_(std::move(text)) {}

    const std::string& text() const { return text_; }
    // For the only holder of the object: the caller may change the bytes.
    std::string& editable() {
        hash_ = 0;
        keyClass_ = KeyClass::Unknown;
        return text_;
    }

    std::uint32_t hash() const {
        if (hash_ == 0) hash_ = hashOf(text_);
        return hash_;
    }
    // True when the text is a 32-bit integer in the form that std::to_string gives it.
    bool isIntegerKey(std::int32_t& value) const {
        if (keyClass_ == KeyClass::Unknown) classify();
        value = keyNumber_;
        return keyClass_ == KeyClass::Integer;
    }

    static std::uint32_t hashOf(std::string_view text);

private:
    enum class KeyClass : std::uint8_t { Unknown, Text, Integer };
    void classify() const;

    mutable std::uint32_t hash_ = 0;  // beside the count: a smaller record
    std::string text_;
    mutable std::int32_t keyNumber_ = 0;
    mutable KeyClass keyClass_ = KeyClass::Unknown;
};
static_assert(sizeof(void*) != 8 || sizeof(StringObject) == 48);

}  // namespace kelmora
