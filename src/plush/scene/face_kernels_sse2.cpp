#include "base/cpu_features.h"

#if defined(KELMORA_X86)

#include <cstring>

#include "plush/scene/face_kernels.h"

namespace kelmora {
namespace {

#define KELMORA_LANES

constexpr std::size_t laneCount = 4;
using Lanes = __m128;
using Whole = __m128i;

inline Lanes all(float value) {
    return _mm_set1_ps(value);
}
inline Lanes placesFrom(float first) {
    return _mm_add_ps(all(first), _mm_setr_ps(0, 1, 2, 3));
}
inline Lanes load(const float* from) {
    return _mm_loadu_ps(from);
}
inline Whole load(const std::uint32_t* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
inline void store(float* to, Lanes values) {
    _mm_storeu_ps(to, values);
}
inline void store(std::int32_t* to, Whole values) {
    _mm_store_si128(reinterpret_cast<__m128i*>(to), values);
}
inline Lanes add(Lanes a, Lanes b) {
    return _mm_add_ps(a, b);
}
inline Lanes subtract(Lanes a, Lanes b) {
    return _mm_sub_ps(a, b);
}
inline Lanes multiply(Lanes a, Lanes b) {
    return _mm_mul_ps(a, b);
}
inline Lanes divide(Lanes a, Lanes b) {
    return _mm_div_ps(a, b);
}
inline Lanes both(Lanes a, Lanes b) {
    return _mm_and_ps(a, b);
}
// The second where the first is no number.
inline Lanes greater(Lanes a, Lanes b) {
    return _mm_max_ps(a, b);
}
inline Lanes lesser(Lanes a, Lanes b) {
    return _mm_min_ps(a, b);
}
inline Lanes less(Lanes a, Lanes b) {
    return _mm_cmplt_ps(a, b);
}
inline Lanes root(Lanes a) {
    return _mm_sqrt_ps(a);
}
inline Whole integers(Lanes a) {
    return _mm_cvttps_epi32(a);
}
inline Lanes floats(Whole a) {
    return _mm_cvtepi32_ps(a);
}
inline Whole lowByte(Whole a) {
    return _mm_and_si128(a, _mm_set1_epi32(255));
}
template <int bits>
inline Whole shifted(Whole a) {
    return _mm_srli_epi32(a, bits);
}
inline void storePixels(unsigned char* to, Whole red, Whole green, Whole blue) {
    const Whole low = _mm_or_si128(red, _mm_slli_epi32(green, 8));
    const Whole high = _mm_or_si128(_mm_slli_epi32(blue, 16), _mm_set1_epi32(-0x1000000));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_or_si128(low, high));
}

#include "plush/scene/face_kernel_loops.h"

}  // namespace

const FaceKernels sse2FaceKernels{map, shade, shadeEvenly};

}  // namespace kelmora

#endif
