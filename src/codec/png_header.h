#pragma once

#include <cstdint>

#include "codec/pixel_limit.h"

namespace vh::png {

enum ColourType : std::uint8_t { Grey = 0, Rgb = 2, Palette = 3, GreyAlpha = 4, Rgba = 6 };

// The fields of IHDR.
struct Header {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint8_t bit_depth = 0;
    std::uint8_t colour_type = 0;
    std::uint8_t compression = 0;
    std::uint8_t filter = 0;
    std::uint8_t interlace = 0;
};

constexpr unsigned channel_count(std::uint8_t colour_type) {
    switch (colour_type) {
        case Rgb:
            return 3;
        case GreyAlpha:
            return 2;
        case Rgba:
            return 4;
        default:
            return 1;
    }
}

}  // namespace vh::png
