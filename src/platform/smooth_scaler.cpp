#include "platform/smooth_scaler.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstring>

namespace kelmora {
namespace {

struct Position {
    int first;
    std::uint32_t part;  // 256ths on the way to the next pixel
};

// Where the middle of a drawn pixel lies between the middles of the picture's pixels.
Position positionOf(int drawn, int imageSize, int drawnSize) {
    const std::int64_t middle = (std::int64_t{drawn} * 2 + 1) * imageSize * 128 / drawnSize - 128;
    const std::int64_t held = std::clamp(middle, std::int64_t{0}, std::int64_t{imageSize - 1} * 256);
    return {static_cast<int>(held / 256), static_cast<std::uint32_t>(held % 256)};
}

__m128i loadPixels(const std::uint32_t* pixels) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
}

// (a * first + b * second + 128) / 256 in each of eight channels.
__m128i mixed(__m128i a, __m128i first, __m128i b, __m128i second) {
    const __m128i sum = _mm_add_epi16(_mm_mullo_epi16(a, first), _mm_mullo_epi16(b, second));
    return _mm_srli_epi16(_mm_add_epi16(sum, _mm_set1_epi16(128)), 8);
}

// The left pixel's channels times its weight beside the right one's.
__m128i weighted(const std::uint32_t* left, std::uint32_t weights) {
    const __m128i pair = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(left));
    const __m128i both = _mm_cvtsi32_si128(static_cast<int>(weights));
    const __m128i each = _mm_unpacklo_epi16(both, both);
    return _mm_mullo_epi16(_mm_unpacklo_epi8(pair, _mm_setzero_si128()), _mm_shuffle_epi32(each, 0x50));
}

}  // namespace

void SmoothScaler::prepare(int imageWidth, int imageHeight, int drawnWidth, int drawnHeight) {
    std::fill(rows_, rows_ + 2, -1);
    imageHeight_ = imageHeight;
    drawnHeight_ = drawnHeight;
    const auto width = static_cast<std::size_t>(drawnWidth);
    if (imageWidth == imageWidth_ && width == columns_.size()) return;
    imageWidth_ = imageWidth;
    columns_.resize(width);
    for (int x = 0; x < drawnWidth; ++x) {
        const Position at = positionOf(x, imageWidth, drawnWidth);
        columns_[static_cast<std::size_t>(x)] = {at.first, (256 - at.part) | at.part << 16};
    }
    for (std::vector<std::uint32_t>& row : widened_) row.resize(width);
    padded_.resize(static_cast<std::size_t>(imageWidth) + 1);
}

SmoothScaler::Between SmoothScaler::rowsAt(int drawnRow) const {
    const Position at = positionOf(drawnRow, imageHeight_, drawnHeight_);
    return {at.first, std::min(at.first + 1, imageHeight_ - 1), at.part};
}

// The pixel behind the last one is read with a weight of 0.
void SmoothScaler::bring(int imageRow, std::span<const std::uint32_t> pixels) {
    std::copy(pixels.begin(), pixels.end(), padded_.begin());
    padded_.back() = pixels.back();
    rows_[imageRow & 1] = imageRow;
    std::uint32_t* out = widened_[imageRow & 1].data();
    const std::uint32_t* source = padded_.data();
    const std::size_t count = columns_.size();
    const Column* columns = columns_.data();
    std::size_t x = 0;
    for (; x + 2 <= count; x += 2) {
        const __m128i first = weighted(source + columns[x].left, columns[x].weights);
        const __m128i second = weighted(source + columns[x + 1].left, columns[x + 1].weights);
        const __m128i sum =
            _mm_add_epi16(_mm_unpacklo_epi64(first, second), _mm_unpackhi_epi64(first, second));
        const __m128i channels = _mm_srli_epi16(_mm_add_epi16(sum, _mm_set1_epi16(128)), 8);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + x), _mm_packus_epi16(channels, channels));
    }
    for (; x < count; ++x) {
        const __m128i one = weighted(source + columns[x].left, columns[x].weights);
        const __m128i sum = _mm_add_epi16(one, _mm_srli_si128(one, 8));
        const __m128i channels = _mm_srli_epi16(_mm_add_epi16(sum, _mm_set1_epi16(128)), 8);
        const int pixel = _mm_cvtsi128_si32(_mm_packus_epi16(channels, channels));
        std::memcpy(out + x, &pixel, sizeof pixel);
    }
}

void SmoothScaler::mix(const Between& between, std::uint32_t* row) const {
    const std::vector<std::uint32_t>& upper = widened_[between.upper & 1];
    const std::size_t count = upper.size();
    if (between.part == 0) {
        std::copy(upper.begin(), upper.end(), row);
        return;
    }
    const std::uint32_t* above = upper.data();
    const std::uint32_t* below = widened_[between.lower & 1].data();
    const __m128i aboveWeight = _mm_set1_epi16(static_cast<short>(256 - between.part));
    const __m128i belowWeight = _mm_set1_epi16(static_cast<short>(between.part));
    const __m128i zero = _mm_setzero_si128();
    const auto four = [&](__m128i a, __m128i b) {
        const __m128i low =
            mixed(_mm_unpacklo_epi8(a, zero), aboveWeight, _mm_unpacklo_epi8(b, zero), belowWeight);
        const __m128i high =
            mixed(_mm_unpackhi_epi8(a, zero), aboveWeight, _mm_unpackhi_epi8(b, zero), belowWeight);
        return _mm_packus_epi16(low, high);
    };
    std::size_t x = 0;
    for (; x + 4 <= count; x += 4)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(row + x),
                         four(loadPixels(above + x), loadPixels(below + x)));
    for (; x < count; ++x) {
        const __m128i one = four(_mm_cvtsi32_si128(static_cast<int>(above[x])),
                                 _mm_cvtsi32_si128(static_cast<int>(below[x])));
        row[x] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(one));
    }
}

}  // namespace kelmora
