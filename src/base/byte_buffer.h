#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace kelmora {

// Blocks from this size on come as fresh pages of the system: zeroed, and costing nothing until touched.
constexpr std::size_t freshBlockSize = std::size_t{64} << 20;

// Leaves new elements unset where std::vector would zero them: for buffers that are filled straight after
// they grow. An element given a value is constructed from it as usual.
template <typename T>
class DefaultInitAllocator : public std::allocator<T> {
public:
    template <typename U>
    struct rebind {
        using other = DefaultInitAllocator<U>;
    };

    T* allocate(std::size_t count) {
        if (count < freshBlockSize / sizeof(T)) return std::allocator<T>::allocate(count);
        void* block = std::calloc(count, sizeof(T));
        if (!block) throw std::bad_alloc();
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t count) {
        if (count < freshBlockSize / sizeof(T))
            std::allocator<T>::deallocate(block, count);
        else
            std::free(block);
    }
    template <typename U>
    void construct(U* place) {
        ::new (static_cast<void*>(place)) U;
    }
    template <typename U, typename... Args>
    void construct(U* place, Args&&... args) {
        ::new (static_cast<void*>(place)) U(std::forward<Args>(args)...);
    }
};

using ByteBuffer = std::vector<unsigned char, DefaultInitAllocator<unsigned char>>;

// Makes `buffer` that many zeros. False, with `buffer` empty, where they cannot be had.
[[nodiscard]] inline bool assignZeros(ByteBuffer& buffer, std::uint64_t size) try {
    buffer = ByteBuffer();
    if (size > buffer.max_size()) return false;
    buffer.resize(static_cast<std::size_t>(size));
    if (size != 0 && size < freshBlockSize) std::memset(buffer.data(), 0, buffer.size());
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

}  // namespace kelmora
