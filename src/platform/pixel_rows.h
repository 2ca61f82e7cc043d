#pragma once

#include <cstdint>
#include <span>

namespace kelmora {

// One row of pixels at a time. A pixel is a little-endian word of red, green, blue and straight alpha; a
// device pixel is blue, green, red and a zero byte. Rows that belong together have the same length.

struct ClearColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    std::uint32_t opaqueWord() const {
        return std::uint32_t{red} | std::uint32_t{green} << 8 | std::uint32_t{blue} << 16 | 0xff000000u;
    }
};

// (clear * (255 - alpha) + source * alpha) / 255
constexpr std::uint32_t blendChannel(std::uint32_t clear, std::uint32_t source, std::uint32_t alpha) {
    constexpr std::uint64_t roundedUpReciprocal = 16843010;  // 2^32 / 255
    const std::uint32_t sum = clear * (255 - alpha) + source * alpha;
    return static_cast<std::uint32_t>(sum * roundedUpReciprocal >> 32);
}

// Blends one pixel over the clear colour; the result is opaque.
constexpr std::uint32_t blendPixel(ClearColour clear, std::uint32_t source) {
    const std::uint32_t alpha = source >> 24;
    return blendChannel(clear.red, source & 0xff, alpha) |
           blendChannel(clear.green, source >> 8 & 0xff, alpha) << 8 |
           blendChannel(clear.blue, source >> 16 & 0xff, alpha) << 16 | 0xff000000u;
}

bool rowIsOpaque(std::span<const std::uint32_t> row);

// row[x] = source[columns[x]]
void gatherRow(const std::uint32_t* source, std::span<const int> columns, std::uint32_t* row);
void blendGatheredRow(const std::uint32_t* source, std::span<const int> columns, ClearColour clear,
                      std::uint32_t* row);

// Turned back it is the pixel with alpha 0.
constexpr std::uint32_t devicePixel(std::uint32_t pixel) {
    return (pixel & 0xff00u) | (pixel & 0xffu) << 16 | (pixel >> 16 & 0xffu);
}
void deviceRow(std::span<const std::uint32_t> row, std::uint32_t* device);

}  // namespace kelmora
