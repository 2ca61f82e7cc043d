#include "rwby/string_object.h"

#include <cstring>
#include <new>
#include <stdexcept>

#include "base/memory_budget.h"
#include "text/limits.h"

namespace vesper::ruby {
namespace {

std::size_t joinedSize(std::size_t left, std::size_t right) {
    if (left + right > kelmora::maximumTextSize) throw std::runtime_error("the text is too large");
    return left + right;
}

void copyBytes(char* to, std::string_view text) {
    if (!text.empty()) std::memcpy(to, text.data(), text.size());
}

// Short texts rarely grow; long ones do so in loops.
std::size_t spareFor(std::size_t size) {
    return size < 256 ? 16 : size;
}

}  // namespace

kelmora::Ref<TextBlock> TextBlock::make(std::size_t capacity) {
    kelmora::MemoryBudget::take(sizeof(TextBlock) + capacity);
    auto* block = new (::operator new(sizeof(TextBlock) + capacity)) TextBlock;
    block->capacity = capacity;
    return kelmora::Ref<TextBlock>(block);
}

TextBlock::~TextBlock() {
    kelmora::MemoryBudget::give(sizeof(TextBlock) + capacity);
}

StringObject::StringObject(std::size_t size, std::size_t spare) : size_(static_cast<std::uint32_t>(size)) {
    if (size > inlineSize) {
        block_ = TextBlock::make(size + spare);
        block_->used = size;
    }
    data_ = room();
}

StringObject::StringObject(std::string_view text) : StringObject(joinedSize(text.size(), 0), 0) {
    copyBytes(room(), text);
}

StringObject* StringObject::concatenate(const StringObject& left, std::string_view right) {
    TextBlock* block = left.block_.get();
    const std::size_t size = joinedSize(left.size_, right.size());
    const bool growsInPlace = block && left.data_ + left.size_ == block->bytes() + block->used &&
                              block->capacity - block->used >= right.size();
    if (!growsInPlace) return concatenate(left.text(), right);
    auto* joined = new StringObject(std::string_view());
    copyBytes(block->bytes() + block->used, right);
    block->used += right.size();
    joined->block_ = left.block_;
    joined->data_ = left.data_;
    joined->size_ = static_cast<std::uint32_t>(size);
    return joined;
}

StringObject* StringObject::concatenate(std::string_view left, std::string_view right) {
    const std::size_t size = joinedSize(left.size(), right.size());
    auto* joined = new StringObject(size, spareFor(size));
    copyBytes(joined->room(), left);
    copyBytes(joined->room() + left.size(), right);
    return joined;
}

std::uint32_t StringObject::hashOf(std::string_view text) {
    std::uint32_t hash = 2166136261u;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    hash ^= hash >> 15;
    return hash == 0 ? 1 : hash;
}

}  // namespace vesper::ruby
