#include "codec/png_unfilter.h"

#include <algorithm>
#include <cstring>

#include "codec/load_store.h"
#include "codec/paeth_vector.h"
#include "codec/row_filter.h"

namespace vh::png {
namespace {

// A row being unfiltered. Vector forms do the first part and leave the rest to the plain form.
struct Row {
    unsigned char* out;
    const unsigned char* raw;
    const unsigned char* prior;  // not null
    std::size_t size;
    std::size_t pixel;  // bytes to the left neighbour
    std::size_t done = 0;

    int left() const { return done < pixel ? 0 : out[done - pixel]; }
    int upper_left() const { return done < pixel ? 0 : prior[done - pixel]; }
    void put(int predicted) {
        out[done] = static_cast<unsigned char>(raw[done] + predicted);
        ++done;
    }
};

void finish_sub(Row& row) {
    while (row.done < row.size) row.put(row.left());
}
void finish_up(Row& row) {
    while (row.done < row.size) row.put(row.prior[row.done]);
}
void finish_average(Row& row) {
    while (row.done < row.size) row.put((row.left() + row.prior[row.done]) / 2);
}
void finish_paeth(Row& row) {
    while (row.done < row.size) row.put(paeth_predictor(row.left(), row.prior[row.done], row.upper_left()));
}
// With nothing above, the average is half of the left byte.
void finish_half(Row& row) {
    while (row.done < row.size) row.put(row.left() / 2);
}
void copy_row(Row& row) {
    std::copy_n(row.raw, row.size, row.out);
    row.done = row.size;
}

#if defined(KELMORA_X86)

// Pixels of 3 bytes are read and written as 4: the byte too many is put right by the next pixel, and the last
// pixel of a row is left to the plain form.
constexpr std::size_t lane = 4;

inline __m128i load_pixel(const unsigned char* place) {
    int word;
    std::memcpy(&word, place, sizeof word);
    return _mm_cvtsi32_si128(word);
}
inline void store_pixel(unsigned char* place, __m128i value) {
    const int word = _mm_cvtsi128_si32(value);
    std::memcpy(place, &word, sizeof word);
}

template <std::size_t Pixel>
void start_sub(Row& row) {
    __m128i left = _mm_setzero_si128();
    for (; row.done + lane <= row.size; row.done += Pixel) {
        left = _mm_add_epi8(left, load_pixel(row.raw + row.done));
        store_pixel(row.out + row.done, left);
    }
}

void start_up(Row& row) {
    for (; row.done + 16 <= row.size; row.done += 16) {
        const __m128i upper = load_vector(row.prior + row.done);
        store_vector(row.out + row.done, _mm_add_epi8(upper, load_vector(row.raw + row.done)));
    }
}

// The processor's average rounds up. On inverted bytes that is rounding down, and keeping the left pixel
// inverted leaves two steps from one pixel to the next.
template <std::size_t Pixel>
void start_average(Row& row) {
    const __m128i all = _mm_set1_epi8(-1);
    __m128i inverted_left = all;
    for (; row.done + lane <= row.size; row.done += Pixel) {
        const __m128i inverted_upper = _mm_xor_si128(load_pixel(row.prior + row.done), all);
        inverted_left =
            _mm_sub_epi8(_mm_avg_epu8(inverted_left, inverted_upper), load_pixel(row.raw + row.done));
        store_pixel(row.out + row.done, _mm_xor_si128(inverted_left, all));
    }
}

template <std::size_t Pixel>
void start_half(Row& row) {
    const __m128i low_bits = _mm_set1_epi8(0x7F);
    __m128i left = _mm_setzero_si128();
    for (; row.done + lane <= row.size; row.done += Pixel) {
        const __m128i half = _mm_and_si128(_mm_srli_epi16(left, 1), low_bits);
        left = _mm_add_epi8(half, load_pixel(row.raw + row.done));
        store_pixel(row.out + row.done, left);
    }
}

template <std::size_t Pixel>
void start_paeth(Row& row) {
    const __m128i zero = _mm_setzero_si128();
    __m128i left = zero;
    __m128i upper_left = zero;
    for (; row.done + lane <= row.size; row.done += Pixel) {
        const __m128i upper = _mm_unpacklo_epi8(load_pixel(row.prior + row.done), zero);
        const __m128i raw = _mm_unpacklo_epi8(load_pixel(row.raw + row.done), zero);
        // Adding bytes keeps the zero high halves zero.
        left = _mm_add_epi8(raw, paeth_lanes(left, upper, upper_left));
        upper_left = upper;
        store_pixel(row.out + row.done, _mm_packus_epi16(left, left));
    }
}

inline __m128i widen(__m128i low, __m128i high) {
    return _mm_unpacklo_epi8(_mm_unpacklo_epi32(low, high), _mm_setzero_si128());
}

// One pixel costs a long chain of steps that uses half a register. The other half takes the row below, one
// pixel behind, for which this row's latest pixel is the upper one.
template <std::size_t Pixel>
void start_paeth_pair(Row& first, Row& second) {
    const __m128i zero = _mm_setzero_si128();
    if (first.size < 2 * Pixel + lane) return;
    __m128i left = zero;
    __m128i upper_left = zero;
    __m128i second_raw = zero;
    for (; first.done + lane <= first.size; first.done += Pixel) {
        const __m128i first_upper = _mm_unpacklo_epi8(load_pixel(first.prior + first.done), zero);
        const __m128i upper = _mm_unpacklo_epi64(first_upper, left);
        const __m128i raw = widen(load_pixel(first.raw + first.done), second_raw);
        left = _mm_add_epi8(raw, paeth_lanes(left, upper, upper_left));
        upper_left = upper;
        const __m128i packed = _mm_packus_epi16(left, left);
        store_pixel(first.out + first.done, packed);
        if (first.done > 0) {
            store_pixel(second.out + second.done, _mm_srli_si128(packed, 4));
            second.done += Pixel;
        }
        second_raw = load_pixel(second.raw + second.done);
    }
}

template <std::size_t Pixel>
void start_row(unsigned filter, Row& row, bool first) {
    switch (filter) {
        case FilterSub:
            return start_sub<Pixel>(row);
        case FilterAverage:
            return first ? start_half<Pixel>(row) : start_average<Pixel>(row);
        case FilterPaeth:
            return start_paeth<Pixel>(row);
        default:
            return;
    }
}

void start_row_in_vectors(unsigned filter, Row& row, bool first) {
    if (filter == FilterUp) return start_up(row);
    if (row.pixel == 3) start_row<3>(filter, row, first);
    if (row.pixel == 4) start_row<4>(filter, row, first);
}

#else

void start_row_in_vectors(unsigned, Row&, bool) {}

#endif

// The filter that does the same without a row above.
unsigned without_prior(unsigned filter) {
    if (filter == FilterUp) return FilterNone;
    if (filter == FilterPaeth) return FilterSub;
    return filter;
}

bool unfilter(unsigned filter, Row row, bool in_vectors) {
    if (filter >= FilterCount) return false;
    const bool first = row.prior == nullptr;
    if (first) filter = without_prior(filter);
    if (in_vectors) start_row_in_vectors(filter, row, first);
    switch (filter) {
        case FilterNone:
            copy_row(row);
            break;
        case FilterSub:
            finish_sub(row);
            break;
        case FilterUp:
            finish_up(row);
            break;
        case FilterAverage:
            first ? finish_half(row) : finish_average(row);
            break;
        default:
            finish_paeth(row);
            break;
    }
    return true;
}

}  // namespace

bool prefers_paeth_pairs(std::size_t bytes_per_pixel) {
#if defined(KELMORA_X86)
    return bytes_per_pixel == 3 || bytes_per_pixel == 4;
#else
    return bytes_per_pixel == 0;
#endif
}

void unfilter_paeth_pair(unsigned char* const out[2], const unsigned char* const raw[2],
                         const unsigned char* prior, std::size_t row_bytes, std::size_t bytes_per_pixel) {
    Row first{out[0], raw[0], prior, row_bytes, bytes_per_pixel};
    Row second{out[1], raw[1], out[0], row_bytes, bytes_per_pixel};
#if defined(KELMORA_X86)
    if (bytes_per_pixel == 3) start_paeth_pair<3>(first, second);
    if (bytes_per_pixel == 4) start_paeth_pair<4>(first, second);
#endif
    finish_paeth(first);
    finish_paeth(second);
}

bool unfilter_row_to(unsigned filter, unsigned char* out, const unsigned char* raw,
                     const unsigned char* prior, std::size_t row_bytes, std::size_t bytes_per_pixel) {
    return unfilter(filter, {out, raw, prior, row_bytes, bytes_per_pixel}, true);
}

bool unfilter_row_to_plain(unsigned filter, unsigned char* out, const unsigned char* raw,
                           const unsigned char* prior, std::size_t row_bytes, std::size_t bytes_per_pixel) {
    return unfilter(filter, {out, raw, prior, row_bytes, bytes_per_pixel}, false);
}

}  // namespace vh::png
