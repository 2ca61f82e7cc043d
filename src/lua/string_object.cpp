#include "lua/string_object.h"

#include <cstddef>
#include <cstring>
#include <new>
#include <stdexcept>

#include "base/memory_budget.h"
#include "base/pooled.h"
#include "text/limits.h"

namespace vesper::lua {
namespace {

// The memory of short texts, object and bytes together, is handed out again.
template <std::size_t size>
struct Block : kelmora::Pooled<Block<size>> {
    alignas(StringObject) std::byte bytes[size];
};
using ShortBlock = Block<32>;
using LongerBlock = Block<64>;

constexpr std::size_t shortCapacity = sizeof(ShortBlock) - sizeof(StringObject);
constexpr std::size_t longerCapacity = sizeof(LongerBlock) - sizeof(StringObject);

}  // namespace

void checkTextSize(std::size_t size) {
    if (size > kelmora::maximumTextSize) throw std::runtime_error("the text is too large");
}

StringObject* StringObject::makeEmpty(std::size_t capacity) {
    if (capacity <= shortCapacity)
        return new (ShortBlock::operator new(sizeof(ShortBlock))) StringObject(shortCapacity);
    if (capacity <= longerCapacity)
        return new (LongerBlock::operator new(sizeof(LongerBlock))) StringObject(longerCapacity);
    checkTextSize(capacity);
    kelmora::MemoryBudget::take(sizeof(StringObject) + capacity);
    return new (::operator new(sizeof(StringObject) + capacity)) StringObject(capacity);
}

StringObject* StringObject::make(std::string_view letters) {
    StringObject* object = makeEmpty(letters.size());
    object->append(letters);
    return object;
}

StringObject* StringObject::makeJoined(std::string_view first, std::string_view second) {
    StringObject* object = makeEmpty(first.size() + second.size());
    object->append(first);
    object->append(second);
    return object;
}

void StringObject::destroy(StringObject* object) {
    const std::size_t capacity = object->capacity_;
    object->~StringObject();
    if (capacity == shortCapacity) {
        ShortBlock::operator delete(object);
    } else if (capacity == longerCapacity) {
        LongerBlock::operator delete(object);
    } else {
        kelmora::MemoryBudget::give(sizeof(StringObject) + capacity);
        ::operator delete(object);
    }
}

void StringObject::append(std::string_view letters) {
    if (letters.empty()) return;
    std::memcpy(reinterpret_cast<char*>(this + 1) + size_, letters.data(), letters.size());
    size_ += static_cast<std::uint32_t>(letters.size());
    hash_ = 0;
}

std::uint32_t StringObject::computeHash() const {
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15u;
    std::uint64_t state = size_ * factor;
    const char* at = bytes();
    std::size_t left = size_;
    const auto mix = [&state](std::uint64_t word) {
        state = (state ^ word) * factor;
        state ^= state >> 32;
    };
    for (; left >= 8; at += 8, left -= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, 8);
        mix(word);
    }
    std::uint64_t tail = 0;
    std::memcpy(&tail, at, left);
    mix(tail);
    // The high bits of a product depend on all bytes, the low ones only on the first.
    const auto folded = static_cast<std::uint32_t>((state * factor) >> 32);
    hash_ = folded == 0 ? 1 : folded;
    return hash_;
}

}  // namespace vesper::lua
