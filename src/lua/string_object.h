#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/ref.h"

namespace vesper::lua {

// Shared bytes with their hash. The bytes stand right behind the object.
class StringObject final : public kelmora::RefCounted {
public:
    // At most kelmora::maximumTextSize bytes; longer ones raise.
    static StringObject* make(std::string_view letters);
    static StringObject* makeJoined(std::string_view first, std::string_view second);
    // Room for `capacity` bytes or a few more, none of them in use.
    static StringObject* makeEmpty(std::size_t capacity);
    static void destroy(StringObject* object);

    std::string_view view() const { return {bytes(), size_}; }
    std::size_t size() const { return size_; }
    std::size_t capacity() const { return capacity_; }
    // Never 0.
    std::uint32_t hash() const { return hash_ != 0 ? hash_ : computeHash(); }
    bool equals(const StringObject& other) const {
        if (this == &other) return true;
        return size_ == other.size_ && hash() == other.hash() && view() == other.view();
    }

    // For the one who made it, or holds the only reference; the bytes must fit.
    void append(std::string_view letters);

private:
    explicit StringObject(std::size_t capacity) : capacity_(static_cast<std::uint32_t>(capacity)) {}
    const char* bytes() const { return reinterpret_cast<const char*>(this + 1); }
    [[gnu::noinline]] std::uint32_t computeHash() const;

    mutable std::uint32_t hash_ = 0;
    std::uint32_t size_ = 0;
    std::uint32_t capacity_;
};

// Raises when a text of this size is too large to make.
void checkTextSize(std::size_t size);

}  // namespace vesper::lua
