#include <cstring>
#include <utility>

#include "plush/shader/batch_kernels.h"

#if defined(KELMORA_X86)

namespace kelmora::plush_shader::detail {
namespace {

using Lanes = __m128;
using Ints = __m128i;
constexpr std::size_t laneStep = 4;

Lanes load(const float* from) {
    return _mm_load_ps(from);
}
void store(float* to, Lanes a) {
    _mm_store_ps(to, a);
}
Lanes all(float value) {
    return _mm_set1_ps(value);
}
Lanes allOnes() {
    return _mm_castsi128_ps(_mm_set1_epi32(-1));
}
Lanes add(Lanes a, Lanes b) {
    return _mm_add_ps(a, b);
}
Lanes subtract(Lanes a, Lanes b) {
    return _mm_sub_ps(a, b);
}
Lanes multiply(Lanes a, Lanes b) {
    return _mm_mul_ps(a, b);
}
Lanes divide(Lanes a, Lanes b) {
    return _mm_div_ps(a, b);
}
Lanes squareRoot(Lanes a) {
    return _mm_sqrt_ps(a);
}
// a if it is less, or greater, else b.
Lanes minimum(Lanes a, Lanes b) {
    return _mm_min_ps(a, b);
}
Lanes maximum(Lanes a, Lanes b) {
    return _mm_max_ps(a, b);
}
Lanes both(Lanes a, Lanes b) {
    return _mm_and_ps(a, b);
}
Lanes either(Lanes a, Lanes b) {
    return _mm_or_ps(a, b);
}
Lanes differing(Lanes a, Lanes b) {
    return _mm_xor_ps(a, b);
}
// The bits of b that the mask has not.
Lanes without(Lanes mask, Lanes b) {
    return _mm_andnot_ps(mask, b);
}
Lanes equal(Lanes a, Lanes b) {
    return _mm_cmpeq_ps(a, b);
}
Lanes notEqual(Lanes a, Lanes b) {
    return _mm_cmpneq_ps(a, b);
}
Lanes less(Lanes a, Lanes b) {
    return _mm_cmplt_ps(a, b);
}
Lanes lessOrEqual(Lanes a, Lanes b) {
    return _mm_cmple_ps(a, b);
}
bool anySet(Lanes mask) {
    return _mm_movemask_ps(mask) != 0;
}
Ints truncated(Lanes a) {
    return _mm_cvttps_epi32(a);
}
Lanes toFloats(Ints a) {
    return _mm_cvtepi32_ps(a);
}

// Rounds with a correction of at most one to the number without its fraction. Numbers from 2^23 on, which
// have none, and NaN stay. The sign is kept, also of zeros.
template <typename Correct>
Lanes rounded(Lanes a, Correct correct) {
    const Lanes signBit = _mm_set1_ps(-0.0f);
    const Lanes whole = toFloats(truncated(a));
    const Lanes result = either(correct(whole), both(a, signBit));
    const Lanes isSmall = less(without(signBit, a), all(0x1p23f));
    return either(both(isSmall, result), without(isSmall, a));
}
Lanes roundedDown(Lanes a) {
    return rounded(a, [a](Lanes whole) { return subtract(whole, both(less(a, whole), all(1))); });
}
Lanes roundedUp(Lanes a) {
    return rounded(a, [a](Lanes whole) { return add(whole, both(less(whole, a), all(1))); });
}

Ints loadInts(const unsigned char* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
void storeInts(unsigned char* to, Ints a) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), a);
}
Ints allInts(std::uint32_t value) {
    return _mm_set1_epi32(static_cast<std::int32_t>(value));
}
Ints countedFrom(std::int32_t first) {
    return _mm_add_epi32(_mm_set1_epi32(first), _mm_setr_epi32(0, 1, 2, 3));
}
Ints bothBits(Ints a, Ints b) {
    return _mm_and_si128(a, b);
}
Ints eitherBits(Ints a, Ints b) {
    return _mm_or_si128(a, b);
}
Ints withoutBits(Ints mask, Ints b) {
    return _mm_andnot_si128(mask, b);
}
Ints bitsOf(Lanes a) {
    return _mm_castps_si128(a);
}
template <int bits>
Ints shiftedRight(Ints a) {
    return _mm_srli_epi32(a, bits);
}
template <int bits>
Ints shiftedLeft(Ints a) {
    return _mm_slli_epi32(a, bits);
}

#include "plush/shader/batch_loops.h"

}  // namespace

constinit const BatchKernels sse2BatchKernels = makeKernels();

}  // namespace kelmora::plush_shader::detail

#endif
