#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace kelmora {

// Leaves new elements unset where std::vector would zero them: for buffers that are filled straight after
// they grow. An element given a value is constructed from it as usual.
template <typename T>
class DefaultInitAllocator : public std::allocator<T> {
public:
    template <typename U>
    struct rebind {
        using other = DefaultInitAllocator<U>;
    };

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

}  // namespace kelmora
