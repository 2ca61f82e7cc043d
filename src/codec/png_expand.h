#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "codec/png_chunks.h"
#include "codec/png_header.h"

namespace vh::png {

// What pixels need besides their data to become RGBA.
struct DecodeTables {
    std::array<std::array<unsigned char, 4>, 256> palette{};
    std::size_t palette_size = 0;
    bool has_grey_key = false;
    std::uint16_t grey_key = 0;  // samples equal to it are clear
    bool has_rgb_key = false;
    std::array<std::uint16_t, 3> rgb_key{};
};

bool build_tables(const ParsedPng& parsed, DecodeTables& tables);

// Expands a row of `count` unfiltered pixels to RGBA, `step` bytes from one to the next in `out`. False for a
// pixel beyond the palette.
bool expand_row(const Header& header, const DecodeTables& tables, const unsigned char* row, std::size_t count,
                unsigned char* out, std::size_t step);

// A 16-bit sample as 8 bits, rounded to the nearest.
constexpr unsigned char scale_sample(std::uint32_t sample) {
    return static_cast<unsigned char>((sample * 255 + 32767) / 65535);
}

}  // namespace vh::png
