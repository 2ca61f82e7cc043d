#pragma once

#include <cstdint>

#include "base/pooled.h"

namespace kelmora {

// A software bitmap. Scripts hold it by address, so the record never moves while it lives, and
// the address is never one of another kind of object.
// Pixels are 4 bytes each, red, green, blue, straight alpha; rows from the top, without padding.
// `pixels` and `reflectPixels` are owned by the record and come from image/pixel_memory.h.
struct PlushImage {
    std::int32_t width = 0;
    std::int32_t height = 0;
    unsigned char* pixels = nullptr;
    std::int32_t reflectWidth = 0;
    std::int32_t reflectHeight = 0;
    unsigned char* reflectPixels = nullptr;

    static void* operator new(std::size_t size) { return Pooled<PlushImage>::operator new(size); }
    static void operator delete(void* memory) { Pooled<PlushImage>::operator delete(memory); }
};

}  // namespace kelmora
