#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>

namespace kelmora {

// Stack of plain items that never move. Room for all of them is there from the beginning; what is never
// touched costs no memory.
template <typename T>
requires std::is_trivially_copyable_v<T>
class FixedStack {
public:
    explicit FixedStack(std::uint32_t capacity)
        : items_(std::allocator<T>().allocate(capacity)),
          top_(items_),
          end_(items_ + capacity),
          limit_(end_) {}
    FixedStack(const FixedStack&) = delete;
    FixedStack& operator=(const FixedStack&) = delete;
    ~FixedStack() { std::allocator<T>().deallocate(items_, static_cast<std::size_t>(end_ - items_)); }

    std::uint32_t size() const { return static_cast<std::uint32_t>(top_ - items_); }
    const T& operator[](std::uint32_t index) const { return items_[index]; }
    // Behind the newest item.
    const T* top() const { return top_; }
    const T& back() const { return top_[-1]; }
    bool isFull() const { return top_ == end_; }
    // A closed stack has no room in the eyes of those who ask for it in haste.
    bool isOpen() const { return top_ < limit_; }
    void setOpen(bool on) { limit_ = on ? end_ : items_; }
    // A new item, to be filled in place; there is room.
    T& push() { return *top_++; }
    void drop() { --top_; }

private:
    T* items_;
    T* top_;
    const T* end_;
    const T* limit_;
};

}  // namespace kelmora
