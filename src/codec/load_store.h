#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "base/cpu_features.h"

namespace vh::png {

// Unaligned little-endian access.
template <typename T>
T load_little(const unsigned char* place) {
    T value;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&value, place, sizeof value);
    } else {
        value = 0;
        for (unsigned i = 0; i < sizeof value; ++i) value |= static_cast<T>(T{place[i]} << (8 * i));
    }
    return value;
}
inline std::uint32_t load_u32(const unsigned char* place) {
    return load_little<std::uint32_t>(place);
}
inline std::uint64_t load_u64(const unsigned char* place) {
    return load_little<std::uint64_t>(place);
}
template <typename T>
void store_little(unsigned char* place, T value) {
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(place, &value, sizeof value);
    } else {
        for (unsigned i = 0; i < sizeof value; ++i) place[i] = static_cast<unsigned char>(value >> (8 * i));
    }
}
inline void store_u16(unsigned char* place, std::uint16_t value) {
    store_little(place, value);
}
inline void store_u32(unsigned char* place, std::uint32_t value) {
    store_little(place, value);
}
inline void store_u64(unsigned char* place, std::uint64_t value) {
    store_little(place, value);
}

// Big-endian, as PNG stores its fields.
inline std::uint32_t load_u16_big(const unsigned char* place) {
    return std::uint32_t{place[0]} << 8 | std::uint32_t{place[1]};
}
inline std::uint32_t load_u32_big(const unsigned char* place) {
    return load_u16_big(place) << 16 | load_u16_big(place + 2);
}
inline void store_u32_big(unsigned char* place, std::uint32_t value) {
    for (unsigned i = 0; i < 4; ++i) place[i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

#if defined(KELMORA_X86)
inline __m128i load_vector(const unsigned char* place) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(place));
}
inline void store_vector(unsigned char* place, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(place), value);
}
#endif

}  // namespace vh::png
