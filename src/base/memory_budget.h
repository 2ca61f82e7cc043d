#pragma once

#include <cstddef>
#include <new>

namespace kelmora {

// What the values of guest languages may take in all, in bytes: texts, tables, arrays and maps. Some systems
// grant more memory than there is and end the process that uses it, so a runaway program meets this first, as
// an error like any other. Values live on one thread.
class MemoryBudget {
public:
    // Raises std::bad_alloc.
    static void take(std::size_t bytes) {
        if (used_ > most_ || bytes > most_ - used_) throw std::bad_alloc();
        used_ += bytes;
    }
    static void give(std::size_t bytes) { used_ -= bytes; }
    static std::size_t used() { return used_; }
    static std::size_t most() { return most_; }
    static void setMost(std::size_t bytes) { most_ = bytes; }

private:
    static inline std::size_t most_ = std::size_t{1} << 30;
    static inline std::size_t used_ = 0;
};

// For the containers of such values.
template <typename T>
struct BudgetAllocator {
    using value_type = T;

    BudgetAllocator() = default;
    template <typename Other>
    BudgetAllocator(const BudgetAllocator<Other>&) {}

    T* allocate(std::size_t count) {
        if (count > MemoryBudget::most() / sizeof(T)) throw std::bad_alloc();
        MemoryBudget::take(count * sizeof(T));
        return static_cast<T*>(::operator new(count * sizeof(T)));
    }
    void deallocate(T* memory, std::size_t count) {
        MemoryBudget::give(count * sizeof(T));
        ::operator delete(memory);
    }
    friend bool operator==(const BudgetAllocator&, const BudgetAllocator&) { return true; }
};

}  // namespace kelmora
