#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/pooled.h"
#include "base/ref.h"

namespace vesper::ruby {

// Bytes that several strings may share. A string that ends where the block is filled grows in place: the
// longer string stands in the same block, and the shorter one does not notice.
class TextBlock : public kelmora::RefCounted {
public:
    static kelmora::Ref<TextBlock> make(std::size_t capacity);
    ~TextBlock();
    static void operator delete(void* memory) { ::operator delete(memory); }

    char* bytes() { return reinterpret_cast<char*>(this + 1); }
    std::size_t used = 0;
    std::size_t capacity = 0;

private:
    TextBlock() = default;
};

// An immutable byte string with the hash that map look-up wants, worked out once.
class StringObject : public kelmora::RefCounted, public kelmora::Pooled<StringObject> {
public:
    explicit StringObject(std::string_view text);
    // The two texts behind each other. Raises when the result is longer than any text may be.
    static StringObject* concatenate(const StringObject& left, std::string_view right);
    static StringObject* concatenate(std::string_view left, std::string_view right);

    std::string_view text() const { return {data_, size_}; }
    std::size_t size() const { return size_; }
    std::uint32_t hash() const {
        if (hash_ == 0) hash_ = hashOf(text());
        return hash_;
    }
    static std::uint32_t hashOf(std::string_view text);

private:
    static constexpr std::size_t inlineSize = 24;

    explicit StringObject(std::size_t size, std::size_t spare);
    char* room() { return block_ ? block_->bytes() : inline_; }

    const char* data_;
    std::uint32_t size_;
    mutable std::uint32_t hash_ = 0;
    kelmora::Ref<TextBlock> block_;  // null for texts that fit inside
    char inline_[inlineSize];
};

}  // namespace vesper::ruby
