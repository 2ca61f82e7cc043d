#pragma once

#include <cstdint>

namespace kelmora {

// A software bitmap. Scripts hold it by address, so the record never moves while it lives.
// Pixels are 4 bytes each, red, green, blue, straight alpha; rows from the top, without padding.
// `pixels` and `reflectPixels` are owned by the record and allocated with new[].
struct PlushImage {
    std::int32_t width = 0;
    std::int32_t height = 0;
    unsigned char* pixels = nullptr;
    std::int32_t reflectWidth = 0;
    std::int32_t reflectHeight = 0;
    unsigned char* reflectPixels = nullptr;
};

}  // namespace kelmora
