#include "plush/row_kernels.h"

#if defined(KELMORA_X86)

namespace kelmora {
namespace {

[[gnu::target("avx2")]] __m256i load(const unsigned char* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

[[gnu::target("avx2")]] void store(unsigned char* to, __m256i pixels) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), pixels);
}

// As the mix of four, on eight.
[[gnu::target("avx2"), gnu::always_inline]] inline __m256i mixEight(__m256i target, __m256i source) {
    const __m256i lowBytes = _mm256_set1_epi16(0x00FF);
    const __m256i sourceRb = _mm256_and_si256(source, lowBytes);
    const __m256i sourceGa = _mm256_srli_epi16(source, 8);
    const __m256i targetRb = _mm256_and_si256(target, lowBytes);
    const __m256i targetGa = _mm256_srli_epi16(target, 8);
    const __m256i alpha = _mm256_shufflehi_epi16(_mm256_shufflelo_epi16(sourceGa, _MM_SHUFFLE(3, 3, 1, 1)),
                                                 _MM_SHUFFLE(3, 3, 1, 1));
    const __m256i rest = _mm256_xor_si256(alpha, lowBytes);
    const __m256i sourceGf = _mm256_or_si256(sourceGa, _mm256_set1_epi32(0x00FF0000));
    const __m256i rb =
        _mm256_add_epi16(_mm256_mullo_epi16(sourceRb, alpha), _mm256_mullo_epi16(targetRb, rest));
    const __m256i ga = _mm256_add_epi16(
        _mm256_add_epi16(_mm256_mullo_epi16(sourceGf, alpha), _mm256_set1_epi32(255 << 16 | 1)),
        _mm256_mullo_epi16(targetGa, rest));
    const __m256i rbOut =
        _mm256_srli_epi16(_mm256_mulhi_epu16(rb, _mm256_set1_epi16(static_cast<short>(0x8081))), 7);
    const __m256i gaOut = _mm256_slli_epi16(_mm256_mulhi_epu16(ga, _mm256_set1_epi16(257)), 8);
    return _mm256_or_si256(rbOut, gaOut);
}

[[gnu::target("avx2")]] bool alphasAre(__m256i pixels, __m256i value) {
    return _mm256_movemask_ps(_mm256_castsi256_ps(_mm256_cmpeq_epi8(pixels, value))) == 255;
}

[[gnu::target("avx2")]] bool drawAlike(unsigned char* target, const unsigned char* source) {
    const __m256i a = load(source);
    const __m256i b = load(source + 32);
    if (source[3] == 0) return alphasAre(_mm256_or_si256(a, b), _mm256_setzero_si256());
    if (!alphasAre(_mm256_and_si256(a, b), _mm256_set1_epi8(-1))) return false;
    store(target, a);
    store(target + 32, b);
    return true;
}

bool isPartlyClear(const unsigned char* pixel) {
    return static_cast<unsigned char>(pixel[3] + 1) > 1;
}

[[gnu::target("avx2")]] void mixRow(unsigned char* target, const unsigned char* source, std::size_t count) {
    for (; count >= 16; count -= 16, target += 64, source += 64) {
        if (!isPartlyClear(source) && drawAlike(target, source)) continue;
        store(target, mixEight(load(target), load(source)));
        store(target + 32, mixEight(load(target + 32), load(source + 32)));
    }
    _mm256_zeroupper();
    if (count > 0) sse2Kernels.mix(target, source, count);
}

[[gnu::target("avx2")]] void mixMappedRow(unsigned char* target, const unsigned char* row,
                                          const std::int32_t* columns, std::size_t count) {
    const auto* pixels = reinterpret_cast<const int*>(row);
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        const __m256i places = load(reinterpret_cast<const unsigned char*>(columns + i));
        const __m256i source = _mm256_i32gather_epi32(pixels, places, 4);
        const unsigned char alpha = row[static_cast<std::size_t>(columns[i]) * 4 + 3];
        if (alpha == 0 && alphasAre(source, _mm256_setzero_si256())) continue;
        unsigned char* out = target + i * 4;
        const bool isOpaque = alpha == 255 && alphasAre(source, _mm256_set1_epi8(-1));
        store(out, isOpaque ? source : mixEight(load(out), source));
    }
    _mm256_zeroupper();
    if (i < count) sse2Kernels.mixMapped(target + i * 4, row, columns + i, count - i);
}

[[gnu::target("avx2")]] __m256i nearest(__m256 value) {
    const __m256i whole = _mm256_cvttps_epi32(value);
    const __m256 fraction = _mm256_sub_ps(value, _mm256_cvtepi32_ps(whole));
    return _mm256_sub_epi32(whole,
                            _mm256_castps_si256(_mm256_cmp_ps(fraction, _mm256_set1_ps(0.5f), _CMP_GE_OQ)));
}

template <bool multiplies>
[[gnu::target("avx2")]] void turnedRun(const TurnedRow& row, std::int32_t first, unsigned char* out,
                                       std::size_t count) {
    const __m256 centre = _mm256_set1_ps(row.centre);
    const __m256 cosine = _mm256_set1_ps(row.cosine);
    const __m256 sine = _mm256_set1_ps(row.sine);
    const __m256 rowSine = _mm256_set1_ps(row.rowSine);
    const __m256 rowCosine = _mm256_set1_ps(row.rowCosine);
    const __m256 scale = _mm256_set1_ps(multiplies ? row.factor : row.scale);
    const __m256 halfWidth = _mm256_set1_ps(row.halfWidth);
    const __m256 halfHeight = _mm256_set1_ps(row.halfHeight);
    const __m256i strides = _mm256_set1_epi32(row.width | 1 << 16);
    const auto* pixels = reinterpret_cast<const int*>(row.pixels);
    __m256i columns = _mm256_add_epi32(_mm256_set1_epi32(first), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
    for (std::size_t i = 0; i < count; i += 8) {
        const __m256 dx = _mm256_sub_ps(_mm256_cvtepi32_ps(columns), centre);
        const __m256 along = _mm256_add_ps(_mm256_mul_ps(dx, cosine), rowSine);
        const __m256 aside = _mm256_sub_ps(rowCosine, _mm256_mul_ps(dx, sine));
        const __m256 across = multiplies ? _mm256_mul_ps(along, scale) : _mm256_div_ps(along, scale);
        const __m256 down = multiplies ? _mm256_mul_ps(aside, scale) : _mm256_div_ps(aside, scale);
        const __m256i u = nearest(_mm256_add_ps(across, halfWidth));
        const __m256i v = nearest(_mm256_add_ps(down, halfHeight));
        const __m256i index = _mm256_madd_epi16(_mm256_or_si256(v, _mm256_slli_epi32(u, 16)), strides);
        store(out + i * 4, _mm256_i32gather_epi32(pixels, index, 4));
        columns = _mm256_add_epi32(columns, _mm256_set1_epi32(8));
    }
}

[[gnu::target("avx2")]] void turnedPixels(const TurnedRow& row, std::int32_t first, unsigned char* out,
                                          std::size_t count) {
    const std::size_t whole = count & ~std::size_t{7};
    if (row.multiplies)
        turnedRun<true>(row, first, out, whole);
    else
        turnedRun<false>(row, first, out, whole);
    _mm256_zeroupper();
    sse2Kernels.turned(row, first + static_cast<std::int32_t>(whole), out + whole * 4, count - whole);
}

void skewPixels(const SkewRow& row, std::int32_t first, std::int32_t last, unsigned char* target) {
    sse2Kernels.skew(row, first, last, target);
}

}  // namespace

const RowKernels avx2Kernels{mixRow, mixMappedRow, turnedPixels, skewPixels};

}  // namespace kelmora

#endif
