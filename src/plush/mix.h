#pragma once

#include <cstdint>
#include <cstring>

namespace kelmora {

// floor(value / 255), exact for every 16-bit value.
inline std::uint32_t floorBy255(std::uint32_t value) {
    return (value * 0x8081u) >> 23;
}

// Source over target in straight alpha, each channel rounded down. The target's alpha does not weigh its
// colour. Clear source pixels change nothing, opaque ones replace.
inline void mixPixel(unsigned char* target, const unsigned char* source) {
    const std::uint32_t alpha = source[3];
    if (alpha == 0) return;
    if (alpha == 255) {
        std::memcpy(target, source, 4);
        return;
    }
    for (int channel = 0; channel < 3; ++channel)
        target[channel] =
            static_cast<unsigned char>(floorBy255((255 - alpha) * target[channel] + alpha * source[channel]));
    const std::uint32_t old = target[3];
    target[3] = static_cast<unsigned char>(alpha + old - floorBy255(old * alpha));
}

inline void drawPixel(unsigned char* target, const unsigned char* source, bool blend) {
    if (blend)
        mixPixel(target, source);
    else
        std::memmove(target, source, 4);
}

}  // namespace kelmora
