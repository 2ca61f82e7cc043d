#pragma once

#include <cstddef>

#include "codec/load_store.h"

namespace vh::png {

// Copies pixels of 4 bytes with the first and third byte exchanged: RGBA to BGRA and back.
inline void swap_red_blue(const unsigned char* from, std::size_t count, unsigned char* to) {
    std::size_t done = 0;
#if defined(VH_X86)
    const __m128i kept = _mm_set1_epi32(static_cast<int>(0xFF00FF00));
    for (; done + 4 <= count; done += 4) {
        const __m128i pixels = load_vector(from + done * 4);
        const __m128i moved = _mm_andnot_si128(kept, pixels);
        const __m128i swapped = _mm_or_si128(_mm_slli_epi32(moved, 16), _mm_srli_epi32(moved, 16));
        store_vector(to + done * 4, _mm_or_si128(_mm_and_si128(kept, pixels), swapped));
    }
#endif
    for (from += done * 4, to += done * 4; done < count; ++done, from += 4, to += 4) {
        const unsigned char first = from[0];
        to[0] = from[2];
        to[1] = from[1];
        to[2] = first;
        to[3] = from[3];
    }
}

}  // namespace vh::png
