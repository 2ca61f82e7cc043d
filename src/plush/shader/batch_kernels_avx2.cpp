#include <cstring>
#include <utility>

#include "plush/shader/batch_kernels.h"

#if defined(KELMORA_X86)

namespace kelmora::plush_shader::detail {
namespace {

// Everything from here on is for processors with AVX2. What must run on all comes from other sources.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

using Lanes = __m256;
using Ints = __m256i;
constexpr std::size_t laneStep = 8;

Lanes load(const float* from) {
    return _mm256_load_ps(from);
}
void store(float* to, Lanes a) {
    _mm256_store_ps(to, a);
}
Lanes all(float value) {
    return _mm256_set1_ps(value);
}
Lanes allOnes() {
    return _mm256_castsi256_ps(_mm256_set1_epi32(-1));
}
Lanes add(Lanes a, Lanes b) {
    return _mm256_add_ps(a, b);
}
Lanes subtract(Lanes a, Lanes b) {
    return _mm256_sub_ps(a, b);
}
Lanes multiply(Lanes a, Lanes b) {
    return _mm256_mul_ps(a, b);
}
Lanes divide(Lanes a, Lanes b) {
    return _mm256_div_ps(a, b);
}
Lanes squareRoot(Lanes a) {
    return _mm256_sqrt_ps(a);
}
// a if it is less, or greater, else b.
Lanes minimum(Lanes a, Lanes b) {
    return _mm256_min_ps(a, b);
}
Lanes maximum(Lanes a, Lanes b) {
    return _mm256_max_ps(a, b);
}
Lanes both(Lanes a, Lanes b) {
    return _mm256_and_ps(a, b);
}
Lanes either(Lanes a, Lanes b) {
    return _mm256_or_ps(a, b);
}
Lanes differing(Lanes a, Lanes b) {
    return _mm256_xor_ps(a, b);
}
// The bits of b that the mask has not.
Lanes without(Lanes mask, Lanes b) {
    return _mm256_andnot_ps(mask, b);
}
Lanes equal(Lanes a, Lanes b) {
    return _mm256_cmp_ps(a, b, _CMP_EQ_OQ);
}
Lanes notEqual(Lanes a, Lanes b) {
    return _mm256_cmp_ps(a, b, _CMP_NEQ_UQ);
}
Lanes less(Lanes a, Lanes b) {
    return _mm256_cmp_ps(a, b, _CMP_LT_OQ);
}
Lanes lessOrEqual(Lanes a, Lanes b) {
    return _mm256_cmp_ps(a, b, _CMP_LE_OQ);
}
bool anySet(Lanes mask) {
    return _mm256_movemask_ps(mask) != 0;
}
Ints truncated(Lanes a) {
    return _mm256_cvttps_epi32(a);
}
Lanes toFloats(Ints a) {
    return _mm256_cvtepi32_ps(a);
}
Lanes roundedDown(Lanes a) {
    return _mm256_floor_ps(a);
}
Lanes roundedUp(Lanes a) {
    return _mm256_ceil_ps(a);
}

Ints loadInts(const unsigned char* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}
void storeInts(unsigned char* to, Ints a) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), a);
}
Ints allInts(std::uint32_t value) {
    return _mm256_set1_epi32(static_cast<std::int32_t>(value));
}
Ints countedFrom(std::int32_t first) {
    return _mm256_add_epi32(_mm256_set1_epi32(first), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
}
Ints bothBits(Ints a, Ints b) {
    return _mm256_and_si256(a, b);
}
Ints eitherBits(Ints a, Ints b) {
    return _mm256_or_si256(a, b);
}
Ints withoutBits(Ints mask, Ints b) {
    return _mm256_andnot_si256(mask, b);
}
Ints bitsOf(Lanes a) {
    return _mm256_castps_si256(a);
}
template <int bits>
Ints shiftedRight(Ints a) {
    return _mm256_srli_epi32(a, bits);
}
template <int bits>
Ints shiftedLeft(Ints a) {
    return _mm256_slli_epi32(a, bits);
}

#include "plush/shader/batch_loops.h"

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

}  // namespace

constinit const BatchKernels avx2BatchKernels = makeKernels();

}  // namespace kelmora::plush_shader::detail

#endif
