#include "codec/png_filter.h"

#include <limits>

#include "codec/load_store.h"
#include "codec/paeth_vector.h"

namespace vh::png {
namespace {

constexpr std::size_t pixelSize = 4;

unsigned char predict(unsigned filter, int left, int upper, int upper_left) {
    switch (filter) {
        case FilterSub:
            return static_cast<unsigned char>(left);
        case FilterUp:
            return static_cast<unsigned char>(upper);
        case FilterAverage:
            return static_cast<unsigned char>((left + upper) / 2);
        case FilterPaeth:
            return paeth_predictor(left, upper, upper_left);
        default:
            return 0;
    }
}

std::uint64_t filter_part(unsigned filter, const unsigned char* row, const unsigned char* prior,
                          std::size_t from, std::size_t to, unsigned char* out) {
    std::uint64_t sum = 0;
    for (std::size_t i = from; i < to; ++i) {
        const int left = i < pixelSize ? 0 : row[i - pixelSize];
        const int upper_left = i < pixelSize ? 0 : prior[i - pixelSize];
        out[i] = static_cast<unsigned char>(row[i] - predict(filter, left, prior[i], upper_left));
        sum += out[i] < 128 ? out[i] : 256u - out[i];
    }
    return sum;
}

#if defined(KELMORA_X86)

__m128i predict_average(__m128i left, __m128i upper) {
    // The processor's average rounds up.
    const __m128i rounding = _mm_and_si128(_mm_xor_si128(left, upper), _mm_set1_epi8(1));
    return _mm_sub_epi8(_mm_avg_epu8(left, upper), rounding);
}

__m128i predict_paeth(__m128i left, __m128i upper, __m128i upper_left) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i low = paeth_lanes(_mm_unpacklo_epi8(left, zero), _mm_unpacklo_epi8(upper, zero),
                                    _mm_unpacklo_epi8(upper_left, zero));
    const __m128i high = paeth_lanes(_mm_unpackhi_epi8(left, zero), _mm_unpackhi_epi8(upper, zero),
                                     _mm_unpackhi_epi8(upper_left, zero));
    return _mm_packus_epi16(low, high);
}

template <unsigned Filter>
__m128i predict_block(const unsigned char* row, const unsigned char* prior) {
    if constexpr (Filter == FilterSub) return load_vector(row - pixelSize);
    if constexpr (Filter == FilterUp) return load_vector(prior);
    if constexpr (Filter == FilterAverage)
        return predict_average(load_vector(row - pixelSize), load_vector(prior));
    if constexpr (Filter == FilterPaeth)
        return predict_paeth(load_vector(row - pixelSize), load_vector(prior),
                             load_vector(prior - pixelSize));
    return _mm_setzero_si128();
}

// Blocks of 16 bytes from `done` on, which must not be the row's first pixel.
template <unsigned Filter>
std::uint64_t filter_blocks(const unsigned char* row, const unsigned char* prior, std::size_t row_bytes,
                            unsigned char* out, std::size_t& done) {
    const __m128i zero = _mm_setzero_si128();
    __m128i sums = zero;
    for (; done + 16 <= row_bytes; done += 16) {
        const __m128i bytes =
            _mm_sub_epi8(load_vector(row + done), predict_block<Filter>(row + done, prior + done));
        store_vector(out + done, bytes);
        const __m128i magnitudes = _mm_min_epu8(bytes, _mm_sub_epi8(zero, bytes));
        sums = _mm_add_epi64(sums, _mm_sad_epu8(magnitudes, zero));
    }
    unsigned char stored[16];
    store_vector(stored, sums);
    return load_u64(stored) + load_u64(stored + 8);
}

std::uint64_t filter_blocks(unsigned filter, const unsigned char* row, const unsigned char* prior,
                            std::size_t row_bytes, unsigned char* out, std::size_t& done) {
    switch (filter) {
        case FilterSub:
            return filter_blocks<FilterSub>(row, prior, row_bytes, out, done);
        case FilterUp:
            return filter_blocks<FilterUp>(row, prior, row_bytes, out, done);
        case FilterAverage:
            return filter_blocks<FilterAverage>(row, prior, row_bytes, out, done);
        case FilterPaeth:
            return filter_blocks<FilterPaeth>(row, prior, row_bytes, out, done);
        default:
            return filter_blocks<FilterNone>(row, prior, row_bytes, out, done);
    }
}

#else

std::uint64_t filter_blocks(unsigned, const unsigned char*, const unsigned char*, std::size_t, unsigned char*,
                            std::size_t&) {
    return 0;
}

#endif

}  // namespace

std::uint64_t filter_row(unsigned filter, const unsigned char* row, const unsigned char* prior,
                         std::size_t row_bytes, unsigned char* out) {
    std::size_t done = pixelSize;
    std::uint64_t sum = filter_part(filter, row, prior, 0, done, out);
    sum += filter_blocks(filter, row, prior, row_bytes, out, done);
    return sum + filter_part(filter, row, prior, done, row_bytes, out);
}

std::uint64_t filter_row_plain(unsigned filter, const unsigned char* row, const unsigned char* prior,
                               std::size_t row_bytes, unsigned char* out) {
    return filter_part(filter, row, prior, 0, row_bytes, out);
}

RowFilterer::RowFilterer(std::size_t row_bytes) : none_(row_bytes) {
    for (unsigned char filter = 0; filter < FilterCount; ++filter) {
        candidates_[filter].resize(row_bytes + 1);
        candidates_[filter][0] = filter;
    }
}

std::span<const unsigned char> RowFilterer::filter(const unsigned char* row, const unsigned char* prior) {
    if (prior == nullptr) prior = none_.data();
    std::size_t best = 0;
    std::uint64_t best_sum = std::numeric_limits<std::uint64_t>::max();
    for (unsigned filter = 0; filter < FilterCount; ++filter) {
        const std::uint64_t sum =
            filter_row(filter, row, prior, none_.size(), candidates_[filter].data() + 1);
        if (sum >= best_sum) continue;
        best = filter;
        best_sum = sum;
    }
    return candidates_[best];
}

}  // namespace vh::png
