#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace kelmora {

// The memory that pictures' pixels stand in. Large clear pictures cost nothing until they are drawn on.
struct PixelRelease {
    void operator()(unsigned char* pixels) const { std::free(pixels); }
};
using PixelMemory = std::unique_ptr<unsigned char[], PixelRelease>;

// Of a record that holds them by a plain pointer.
inline void releasePixels(unsigned char* pixels) {
    PixelRelease()(pixels);
}

inline PixelMemory heldPixels(void* memory) {
    if (!memory) throw std::bad_alloc();
    return PixelMemory(static_cast<unsigned char*>(memory));
}
// Contents are undefined. Raises std::bad_alloc, as does the other.
inline PixelMemory allocatePixels(std::size_t bytes) {
    return heldPixels(std::malloc(bytes == 0 ? 1 : bytes));
}
// All zero: clear black.
inline PixelMemory allocateClearPixels(std::size_t bytes) {
    return heldPixels(std::calloc(bytes == 0 ? 1 : bytes, 1));
}

}  // namespace kelmora
