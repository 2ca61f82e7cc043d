#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "image/plush_image.h"
#include "plush/mix.h"
#include "plush/row_kernels.h"

namespace kelmora {

inline unsigned char* pixelAt(const PlushImage& image, std::int32_t x, std::int32_t y) {
    return image.pixels + (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                           static_cast<std::size_t>(x)) *
                              4;
}

// A run of neighbouring pixels. Where the rows may overlap, pixel by pixel from the left.
inline void drawRun(unsigned char* target, const unsigned char* source, std::size_t count, bool blend,
                    bool mayOverlap) {
    if (mayOverlap)
        for (std::size_t i = 0; i < count; ++i) drawPixel(target + i * 4, source + i * 4, blend);
    else if (blend)
        rowKernels().mix(target, source, count);
    else
        std::memcpy(target, source, count * 4);
}

// Where pixels wait between being fetched and being drawn.
struct FetchBuffer {
    static constexpr std::size_t capacity = 256;
    alignas(32) unsigned char pixels[capacity * 4];

    // Pixels to fetch at a time; an image drawn onto itself must see each pixel drawn before the next is
    // read.
    static std::size_t step(bool ontoItself) { return ontoItself ? 1 : capacity; }
};

}  // namespace kelmora
