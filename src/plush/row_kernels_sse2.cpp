#include "plush/row_kernels.h"

#if defined(KELMORA_X86)

#include <cstring>

#include "plush/mix.h"

namespace kelmora {
namespace {

__m128i load(const unsigned char* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

void store(unsigned char* to, __m128i pixels) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), pixels);
}

// Each pixel as two pairs of 16-bit lanes, red with blue and green with alpha. With 255 in place of the
// source's alpha and 254 added, the colours' formula gives the alpha too:
// floor(((255 - a) * old + a * 255 + 254) / 255) = a + old - floor(old * a / 255).
// Clear and opaque pixels come out right without a test. floor(x / 255) is x * 0x8081 >> 23, and where 1
// more is added anyway (x + 1) * 257 >> 16, both exact for all sums of these.
[[gnu::always_inline]] inline __m128i mixFour(__m128i target, __m128i source) {
    const __m128i lowBytes = _mm_set1_epi16(0x00FF);
    const __m128i sourceRb = _mm_and_si128(source, lowBytes);
    const __m128i sourceGa = _mm_srli_epi16(source, 8);
    const __m128i targetRb = _mm_and_si128(target, lowBytes);
    const __m128i targetGa = _mm_srli_epi16(target, 8);
    const __m128i alpha =
        _mm_shufflehi_epi16(_mm_shufflelo_epi16(sourceGa, _MM_SHUFFLE(3, 3, 1, 1)), _MM_SHUFFLE(3, 3, 1, 1));
    const __m128i rest = _mm_xor_si128(alpha, lowBytes);
    const __m128i sourceGf = _mm_or_si128(sourceGa, _mm_set1_epi32(0x00FF0000));
    const __m128i rb = _mm_add_epi16(_mm_mullo_epi16(sourceRb, alpha), _mm_mullo_epi16(targetRb, rest));
    const __m128i ga =
        _mm_add_epi16(_mm_add_epi16(_mm_mullo_epi16(sourceGf, alpha), _mm_set1_epi32(255 << 16 | 1)),
                      _mm_mullo_epi16(targetGa, rest));
    const __m128i rbOut = _mm_srli_epi16(_mm_mulhi_epu16(rb, _mm_set1_epi16(static_cast<short>(0x8081))), 7);
    const __m128i gaOut = _mm_slli_epi16(_mm_mulhi_epu16(ga, _mm_set1_epi16(257)), 8);
    return _mm_or_si128(rbOut, gaOut);
}

// True when the alphas of the four pixels all equal the byte that fills `value`.
bool alphasAre(__m128i pixels, __m128i value) {
    return _mm_movemask_ps(_mm_castsi128_ps(_mm_cmpeq_epi8(pixels, value))) == 15;
}

// Sixteen pixels whose first is clear or opaque; false unless all are alike.
bool drawAlike(unsigned char* target, const unsigned char* source) {
    const __m128i a = load(source);
    const __m128i b = load(source + 16);
    const __m128i c = load(source + 32);
    const __m128i d = load(source + 48);
    if (source[3] == 0)
        return alphasAre(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d)), _mm_setzero_si128());
    const __m128i all = _mm_and_si128(_mm_and_si128(a, b), _mm_and_si128(c, d));
    if (!alphasAre(all, _mm_set1_epi8(-1))) return false;
    store(target, a);
    store(target + 16, b);
    store(target + 32, c);
    store(target + 48, d);
    return true;
}

bool isPartlyClear(const unsigned char* pixel) {
    return static_cast<unsigned char>(pixel[3] + 1) > 1;
}

__m128i fetch(const unsigned char* pixels, std::size_t index) {
    std::int32_t pixel;
    std::memcpy(&pixel, pixels + index * 4, 4);
    return _mm_cvtsi32_si128(pixel);
}

void mixRow(unsigned char* target, const unsigned char* source, std::size_t count) {
    for (; count >= 16; count -= 16, target += 64, source += 64) {
        if (!isPartlyClear(source) && drawAlike(target, source)) continue;
        for (int i = 0; i < 64; i += 16) store(target + i, mixFour(load(target + i), load(source + i)));
    }
    for (; count >= 4; count -= 4, target += 16, source += 16)
        store(target, mixFour(load(target), load(source)));
    for (; count > 0; --count, target += 4, source += 4) mixPixel(target, source);
}

void mixMappedRow(unsigned char* target, const unsigned char* row, const std::int32_t* columns,
                  std::size_t count) {
    const auto at = [&](std::size_t i) { return fetch(row, static_cast<std::size_t>(columns[i])); };
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        const __m128i source = _mm_unpacklo_epi64(_mm_unpacklo_epi32(at(i), at(i + 1)),
                                                  _mm_unpacklo_epi32(at(i + 2), at(i + 3)));
        const unsigned char alpha = row[static_cast<std::size_t>(columns[i]) * 4 + 3];
        if (alpha == 0 && alphasAre(source, _mm_setzero_si128())) continue;
        unsigned char* out = target + i * 4;
        store(out,
              alpha == 255 && alphasAre(source, _mm_set1_epi8(-1)) ? source : mixFour(load(out), source));
    }
    plainKernels.mixMapped(target + i * 4, row, columns + i, count - i);
}

// Nearest integers, halves up; for values above -0.5 that 32 bits hold.
__m128i nearest(__m128 value) {
    const __m128i whole = _mm_cvttps_epi32(value);
    const __m128 fraction = _mm_sub_ps(value, _mm_cvtepi32_ps(whole));
    return _mm_sub_epi32(whole, _mm_castps_si128(_mm_cmpge_ps(fraction, _mm_set1_ps(0.5f))));
}

template <bool multiplies>
void turnedRun(const TurnedRow& row, std::int32_t first, unsigned char* out, std::size_t count) {
    const __m128 centre = _mm_set1_ps(row.centre);
    const __m128 cosine = _mm_set1_ps(row.cosine);
    const __m128 sine = _mm_set1_ps(row.sine);
    const __m128 rowSine = _mm_set1_ps(row.rowSine);
    const __m128 rowCosine = _mm_set1_ps(row.rowCosine);
    const __m128 scale = _mm_set1_ps(multiplies ? row.factor : row.scale);
    const __m128 halfWidth = _mm_set1_ps(row.halfWidth);
    const __m128 halfHeight = _mm_set1_ps(row.halfHeight);
    const __m128i strides = _mm_set1_epi32(row.width | 1 << 16);
    __m128i columns = _mm_add_epi32(_mm_set1_epi32(first), _mm_setr_epi32(0, 1, 2, 3));
    const auto ratio = [scale](__m128 value) {
        return multiplies ? _mm_mul_ps(value, scale) : _mm_div_ps(value, scale);
    };
    for (std::size_t i = 0; i < count; i += 4) {
        const __m128 dx = _mm_sub_ps(_mm_cvtepi32_ps(columns), centre);
        const __m128 across = ratio(_mm_add_ps(_mm_mul_ps(dx, cosine), rowSine));
        const __m128 down = ratio(_mm_sub_ps(rowCosine, _mm_mul_ps(dx, sine)));
        const __m128i u = nearest(_mm_add_ps(across, halfWidth));
        const __m128i v = nearest(_mm_add_ps(down, halfHeight));
        // Both fit 16 bits, so one multiply-add gives v * width + u.
        const __m128i index = _mm_madd_epi16(_mm_or_si128(v, _mm_slli_epi32(u, 16)), strides);
        alignas(16) std::uint32_t indices[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(indices), index);
        const auto at = [&](std::size_t lane) { return fetch(row.pixels, indices[lane]); };
        store(out + i * 4,
              _mm_unpacklo_epi64(_mm_unpacklo_epi32(at(0), at(1)), _mm_unpacklo_epi32(at(2), at(3))));
        columns = _mm_add_epi32(columns, _mm_set1_epi32(4));
    }
}

void turnedPixels(const TurnedRow& row, std::int32_t first, unsigned char* out, std::size_t count) {
    const std::size_t whole = count & ~std::size_t{3};
    if (row.multiplies)
        turnedRun<true>(row, first, out, whole);
    else
        turnedRun<false>(row, first, out, whole);
    plainKernels.turned(row, first + static_cast<std::int32_t>(whole), out + whole * 4, count - whole);
}

struct Weights {
    __m128 p;
    __m128 q;
    __m128 r;
    __m128 inside;
};

// A triangle's row with each number in all lanes.
class WideTriangle {
public:
    explicit WideTriangle(const TriangleRow& row)
        : inverse_(_mm_set1_ps(row.inverse)),
          px_(_mm_set1_ps(row.px)),
          qx_(_mm_set1_ps(row.qx)),
          rx_(_mm_set1_ps(row.rx)),
          heightPR_(_mm_set1_ps(row.heightPR)),
          offsetPR_(_mm_set1_ps(row.offsetPR)),
          aboveQ_(_mm_set1_ps(row.aboveQ)),
          aboveR_(_mm_set1_ps(row.aboveR)),
          hasArea_(_mm_cmpneq_ps(inverse_, _mm_setzero_ps())) {}

    Weights at(__m128 x) const {
        const __m128 along = _mm_mul_ps(_mm_sub_ps(x, px_), heightPR_);
        const __m128 q = _mm_mul_ps(inverse_, _mm_sub_ps(along, offsetPR_));
        const __m128 fromQ = _mm_mul_ps(_mm_sub_ps(qx_, x), aboveR_);
        const __m128 fromR = _mm_mul_ps(aboveQ_, _mm_sub_ps(rx_, x));
        const __m128 p = _mm_mul_ps(inverse_, _mm_sub_ps(fromQ, fromR));
        const __m128 r = _mm_sub_ps(_mm_sub_ps(_mm_set1_ps(1), p), q);
        const __m128 least = _mm_min_ps(_mm_min_ps(p, q), r);
        return {p, q, r, _mm_and_ps(hasArea_, _mm_cmpge_ps(least, _mm_setzero_ps()))};
    }

private:
    __m128 inverse_;
    __m128 px_;
    __m128 qx_;
    __m128 rx_;
    __m128 heightPR_;
    __m128 offsetPR_;
    __m128 aboveQ_;
    __m128 aboveR_;
    __m128 hasArea_;
};

__m128 select(__m128 mask, __m128 yes, __m128 no) {
    return _mm_or_ps(_mm_and_ps(mask, yes), _mm_andnot_ps(mask, no));
}

// Stores the pixels at four pairs of coordinates from 0 to 1, which rounding may have pushed a little past,
// in the lanes of the mask.
class SkewStore {
public:
    explicit SkewStore(const SkewRow& row)
        : pixels_(row.pixels),
          maxU_(_mm_set1_ps(row.maxU)),
          maxV_(_mm_set1_ps(row.maxV)),
          lastColumn_(_mm_set1_epi32(row.width - 1)),
          lastLine_(_mm_set1_epi32(row.height - 1)),
          strides_(_mm_set1_epi32(row.width | 1 << 16)) {}

    void operator()(__m128 u, __m128 v, int mask, unsigned char* target) const {
        // The sides fit 15 bits, so the 16-bit minimum does.
        const __m128i column = _mm_min_epi16(nearest(_mm_mul_ps(maxU_, u)), lastColumn_);
        const __m128i line = _mm_min_epi16(nearest(_mm_mul_ps(maxV_, v)), lastLine_);
        const __m128i index = _mm_madd_epi16(_mm_or_si128(line, _mm_slli_epi32(column, 16)), strides_);
        alignas(16) std::uint32_t indices[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(indices), index);
        for (std::size_t lane = 0; lane < 4; ++lane)
            if (mask == 15 || (mask >> lane & 1))
                std::memcpy(target + lane * 4, pixels_ + std::size_t{indices[lane]} * 4, 4);
    }

private:
    const unsigned char* pixels_;
    __m128 maxU_;
    __m128 maxV_;
    __m128i lastColumn_;
    __m128i lastLine_;
    __m128i strides_;
};

void skewPixels(const SkewRow& row, std::int32_t first, std::int32_t last, unsigned char* target) {
    const WideTriangle upperTriangle(row.upper);
    const WideTriangle lowerTriangle(row.lower);
    const SkewStore storePixels(row);
    std::int32_t x = first;
    for (; last - x >= 4; x += 4) {
        const __m128 columns = _mm_cvtepi32_ps(_mm_add_epi32(_mm_set1_epi32(x), _mm_setr_epi32(0, 1, 2, 3)));
        unsigned char* out = target + static_cast<std::size_t>(x) * 4;
        const Weights upper = upperTriangle.at(columns);
        const int upperMask = _mm_movemask_ps(upper.inside);
        if (upperMask == 15) {
            storePixels(upper.q, upper.r, 15, out);
            continue;
        }
        const Weights lower = lowerTriangle.at(columns);
        const int mask = upperMask | _mm_movemask_ps(lower.inside);
        if (mask == 0) continue;
        const __m128 u = select(upper.inside, upper.q, _mm_add_ps(lower.q, lower.p));
        const __m128 v = select(upper.inside, upper.r, _mm_add_ps(lower.q, lower.r));
        storePixels(u, v, mask, out);
    }
    plainKernels.skew(row, x, last, target);
}

}  // namespace

const RowKernels sse2Kernels{mixRow, mixMappedRow, turnedPixels, skewPixels};

}  // namespace kelmora

#endif
