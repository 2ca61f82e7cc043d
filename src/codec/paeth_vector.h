#pragma once

#include "base/cpu_features.h"

#if defined(KELMORA_X86)

namespace vh::png {

inline __m128i absolute(__m128i value) {
    return _mm_max_epi16(value, _mm_sub_epi16(_mm_setzero_si128(), value));
}
inline __m128i choose(__m128i mask, __m128i yes, __m128i no) {
    return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

// The Paeth predictor in 16-bit lanes.
inline __m128i paeth_lanes(__m128i left, __m128i upper, __m128i upper_left) {
    const __m128i rise = _mm_sub_epi16(upper, upper_left);
    const __m128i run = _mm_sub_epi16(left, upper_left);
    const __m128i from_left = absolute(rise);
    const __m128i from_upper = absolute(run);
    const __m128i from_upper_left = absolute(_mm_add_epi16(rise, run));
    const __m128i nearest = _mm_min_epi16(from_upper_left, _mm_min_epi16(from_left, from_upper));
    const __m128i upper_or_corner = choose(_mm_cmpeq_epi16(nearest, from_upper), upper, upper_left);
    return choose(_mm_cmpeq_epi16(nearest, from_left), left, upper_or_corner);
}

}  // namespace vh::png

#endif
