#include "base/cpu_features.h"

#if defined(KELMORA_X86)

#include <cstring>

#include "plush/scene/face_kernels.h"

namespace kelmora {
namespace {

#define KELMORA_LANES [[gnu::target("avx2")]]

constexpr std::size_t laneCount = 8;
using Lanes = __m256;
using Whole = __m256i;

KELMORA_LANES inline Lanes all(float value) {
    return _mm256_set1_ps(value);
}
KELMORA_LANES inline Lanes placesFrom(float first) {
    return _mm256_add_ps(all(first), _mm256_setr_ps(0, 1, 2, 3, 4, 5, 6, 7));
}
KELMORA_LANES inline Lanes load(const float* from) {
    return _mm256_loadu_ps(from);
}
KELMORA_LANES inline Whole load(const std::uint32_t* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}
KELMORA_LANES inline void store(float* to, Lanes values) {
    _mm256_storeu_ps(to, values);
}
KELMORA_LANES inline void store(std::int32_t* to, Whole values) {
    _mm256_store_si256(reinterpret_cast<__m256i*>(to), values);
}
KELMORA_LANES inline Lanes add(Lanes a, Lanes b) {
    return _mm256_add_ps(a, b);
}
KELMORA_LANES inline Lanes subtract(Lanes a, Lanes b) {
    return _mm256_sub_ps(a, b);
}
KELMORA_LANES inline Lanes multiply(Lanes a, Lanes b) {
    return _mm256_mul_ps(a, b);
}
KELMORA_LANES inline Lanes divide(Lanes a, Lanes b) {
    return _mm256_div_ps(a, b);
}
KELMORA_LANES inline Lanes both(Lanes a, Lanes b) {
    return _mm256_and_ps(a, b);
}
// The second where the first is no number.
KELMORA_LANES inline Lanes greater(Lanes a, Lanes b) {
    return _mm256_max_ps(a, b);
}
KELMORA_LANES inline Lanes lesser(Lanes a, Lanes b) {
    return _mm256_min_ps(a, b);
}
KELMORA_LANES inline Lanes less(Lanes a, Lanes b) {
    return _mm256_cmp_ps(a, b, _CMP_LT_OQ);
}
KELMORA_LANES inline Lanes root(Lanes a) {
    return _mm256_sqrt_ps(a);
}
KELMORA_LANES inline Whole integers(Lanes a) {
    return _mm256_cvttps_epi32(a);
}
KELMORA_LANES inline Lanes floats(Whole a) {
    return _mm256_cvtepi32_ps(a);
}
KELMORA_LANES inline Whole lowByte(Whole a) {
    return _mm256_and_si256(a, _mm256_set1_epi32(255));
}
template <int bits>
KELMORA_LANES inline Whole shifted(Whole a) {
    return _mm256_srli_epi32(a, bits);
}
KELMORA_LANES inline void storePixels(unsigned char* to, Whole red, Whole green, Whole blue) {
    const Whole low = _mm256_or_si256(red, _mm256_slli_epi32(green, 8));
    const Whole high = _mm256_or_si256(_mm256_slli_epi32(blue, 16), _mm256_set1_epi32(-0x1000000));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), _mm256_or_si256(low, high));
}

#include "plush/scene/face_kernel_loops.h"

}  // namespace

const FaceKernels avx2FaceKernels{map, shade, shadeEvenly};

}  // namespace kelmora

#endif
