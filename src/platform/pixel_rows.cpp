#include "platform/pixel_rows.h"

#include <cstddef>

namespace kelmora {
namespace {

// Inner loops of a fixed length are what the compiler turns into vector code at our optimisation level.
constexpr std::size_t blockLength = 16;

}  // namespace

bool rowIsOpaque(std::span<const std::uint32_t> row) {
    std::size_t x = 0;
    for (; x + blockLength <= row.size(); x += blockLength) {
        std::uint32_t all = 0xffffffffu;
        for (std::size_t i = 0; i < blockLength; ++i) all &= row[x + i];
        if (all < 0xff000000u) return false;
    }
    for (; x < row.size(); ++x)
        if (row[x] < 0xff000000u) return false;
    return true;
}

void gatherRow(const std::uint32_t* source, std::span<const int> columns, std::uint32_t* row) {
    for (const int column : columns) *row++ = source[column];
}

void blendGatheredRow(const std::uint32_t* source, std::span<const int> columns, ClearColour clear,
                      std::uint32_t* row) {
    const std::uint32_t clearWord = clear.opaqueWord();
    for (const int column : columns) {
        const std::uint32_t pixel = source[column];
        if (pixel >= 0xff000000u)
            *row++ = pixel;
        else
            *row++ = pixel < 0x01000000u ? clearWord : blendPixel(clear, pixel);
    }
}

void deviceRow(std::span<const std::uint32_t> row, std::uint32_t* device) {
    std::size_t x = 0;
    for (; x + blockLength <= row.size(); x += blockLength)
        for (std::size_t i = 0; i < blockLength; ++i) device[x + i] = devicePixel(row[x + i]);
    for (; x < row.size(); ++x) device[x] = devicePixel(row[x]);
}

}  // namespace kelmora
