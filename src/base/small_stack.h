#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

namespace kelmora {

// Stack of plain values whose size is one load away.
template <typename T>
requires std::is_trivially_copyable_v<T>
class SmallStack {
public:
    std::uint32_t size() const { return size_; }
    T& operator[](std::uint32_t index) { return items_[index]; }
    const T& operator[](std::uint32_t index) const { return items_[index]; }
    const T& back() const { return items_[size_ - 1]; }
    void push(T value) {
        if (size_ == capacity_) grow();
        items_[size_++] = value;
    }
    void drop() { --size_; }
    void swap(SmallStack& other) noexcept {
        items_.swap(other.items_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

private:
    [[gnu::noinline]] void grow() {
        const std::uint32_t wider = std::max(16u, capacity_ * 2);
        auto items = std::make_unique<T[]>(wider);
        std::copy_n(items_.get(), size_, items.get());
        items_ = std::move(items);
        capacity_ = wider;
    }

    std::unique_ptr<T[]> items_;
    std::uint32_t size_ = 0;
    std::uint32_t capacity_ = 0;
};

}  // namespace kelmora
