#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "base/memory_budget.h"
#include "lua/value.h"

namespace vesper::lua {

// Values in a row, at most 2^32 - 1 of them. Values may be moved as bytes, so that the row grows by realloc,
// which moves long ones without copying.
class ItemArray {
public:
    ItemArray() = default;
    ItemArray(ItemArray&& other) noexcept
        : items_(std::exchange(other.items_, nullptr)),
          size_(std::exchange(other.size_, 0)),
          capacity_(std::exchange(other.capacity_, 0)) {}
    ItemArray& operator=(ItemArray&&) = delete;
    ~ItemArray() {
        for (Value& item : *this) item.dropReference();
        kelmora::MemoryBudget::give(capacity_ * sizeof(Value));
        std::free(static_cast<void*>(items_));
    }

    std::size_t size() const { return size_; }
    Value* data() { return items_; }
    Value* begin() { return items_; }
    Value* end() { return items_ + size_; }
    const Value* begin() const { return items_; }
    const Value* end() const { return items_ + size_; }
    Value& operator[](std::size_t index) { return items_[index]; }
    const Value& operator[](std::size_t index) const { return items_[index]; }

    bool isFull() const { return size_ == capacity_; }
    // Wants room.
    template <typename AnyValue>
    void pushWithRoom(AnyValue&& value) {
        new (items_ + size_) Value(std::forward<AnyValue>(value));
        ++size_;
    }
    // New items are nil. Never makes the row shorter.
    void extend(std::size_t size) {
        if (size > capacity_) reserve(size < 4 ? 4 : size + size / 2);
        std::memset(static_cast<void*>(end()), 0, (size - size_) * sizeof(Value));
        size_ = static_cast<std::uint32_t>(size);
    }
    void reserve(std::size_t capacity) {
        if (capacity <= capacity_) return;
        kelmora::MemoryBudget::take((capacity - capacity_) * sizeof(Value));
        void* grown = std::realloc(static_cast<void*>(items_), capacity * sizeof(Value));
        if (!grown) {
            kelmora::MemoryBudget::give((capacity - capacity_) * sizeof(Value));
            throw std::bad_alloc();
        }
        items_ = static_cast<Value*>(grown);
        capacity_ = static_cast<std::uint32_t>(capacity);
    }

private:
    Value* items_ = nullptr;
    std::uint32_t size_ = 0;
    std::uint32_t capacity_ = 0;
};

}  // namespace vesper::lua
