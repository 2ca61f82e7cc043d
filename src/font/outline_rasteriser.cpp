#include "font/outline_rasteriser.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <span>

namespace kelmora {
namespace {

// Pixels, of control points from the chord. A cubic's control points pull harder than a quadratic's.
constexpr double flatDistance = 0.35;
constexpr double flatCubicDistance = flatDistance * 2 / 3;
constexpr int maximumDepth = 10;

constexpr std::int32_t perPixel = 4;  // samples along each axis
constexpr double sampleStep = 0.25;
constexpr double firstSample = 0.125;

constexpr double maximumCoordinate = 1 << 30;
constexpr double maximumSide = 1 << 15;
constexpr double maximumPixels = 1 << 26;
constexpr std::size_t maximumCrossings = std::size_t{1} << 24;

Point middle(const Point& a, const Point& b) {
    return {(a.x + b.x) * 0.5, (a.y + b.y) * 0.5};
}

double distanceSquared(const Point& a, const Point& b) {
    return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y);
}

// The winding number of a sample row changes at crossings. Each is kept as the number of the row's samples
// that lie to its left, and its direction in the lowest bit.
using Crossing = OutlineRasteriser::Crossing;

// A place between samples, in samples with 32 bits of fraction, that is stepped from row to row.
using SteppedPlace = std::int64_t;
constexpr double wholePlace = 4294967296.0;
// Nearer to a sample than this, stepping may lead to its wrong side; it is off by 2^-15 at most.
constexpr std::uint32_t nearSample = 1u << 18;
// Fewer rows are worked out one by one.
constexpr std::int32_t steppedRows = 3;

// Finds every crossing once and groups them by sample row. Row j stands at `top - j / 4`, sample m of a row
// at `left + m / 4`; both are exact in double, so comparing against them decides just as testing each sample
// against each segment would.
class CrossingTable {
public:
    CrossingTable(OutlineRasteriser::Scratch& scratch, double left, double top, std::int32_t columns,
                  std::int32_t rows)
        : left_(left),
          top_(top),
          columns_(columns),
          crossed_(scratch.crossed),
          rowStarts_(scratch.rowStarts),
          crossings_(scratch.crossings) {
        crossed_.clear();
        rowStarts_.assign(static_cast<std::size_t>(rows) + 2, 0);
    }

    // False when there are too many.
    bool fill(std::span<const LineSegment> segments) {
        collectRows(segments);
        if (!placeRows()) return false;
        for (const CrossedRows& rows : crossed_) addCrossings(rows);
        return true;
    }

    // Ascending. To be asked once the table is filled, in any order.
    std::span<const Crossing> row(std::int32_t index) {
        const std::size_t end = rowStarts_[static_cast<std::size_t>(index)];
        const std::size_t begin = index == 0 ? 0 : rowStarts_[static_cast<std::size_t>(index) - 1];
        const std::span<Crossing> crossings(crossings_.data() + begin, end - begin);
        sortFew(crossings);
        return crossings;
    }

private:
    using CrossedRows = OutlineRasteriser::CrossedRows;

    void collectRows(std::span<const LineSegment> segments) {
        for (const LineSegment& segment : segments) {
            const auto [low, high] = std::minmax(segment.start.y, segment.end.y);
            auto first = static_cast<std::int32_t>((top_ - high) * perPixel);
            auto last = static_cast<std::int32_t>((top_ - low) * perPixel);
            if (heightOf(first) >= high) ++first;
            if (heightOf(last) < low) --last;
            if (first > last) continue;
            crossed_.push_back({&segment, first, last});
            ++rowStarts_[static_cast<std::size_t>(first) + 1];
            --rowStarts_[static_cast<std::size_t>(last) + 2];
        }
    }

    // Turns the changes in the number of crossings into the place of each row's next crossing; adding them
    // moves every row's place to its end.
    bool placeRows() {
        std::uint32_t total = 0;
        std::uint32_t count = 0;
        for (std::size_t j = 1; j < rowStarts_.size(); ++j) {
            count += rowStarts_[j];
            rowStarts_[j - 1] = total;
            total += count;
            if (total > maximumCrossings) return false;
        }
        if (crossings_.size() < total) crossings_.resize(total);
        return true;
    }

    void addCrossings(const CrossedRows& rows) {
        const Point a = rows.segment->start;
        const Point b = rows.segment->end;
        const double across = b.x - a.x;
        const double up = b.y - a.y;
        const Crossing direction = a.y < b.y ? 1 : 0;
        if (a.x == b.x) {
            const Crossing crossing = samplesBefore(a.x) << 1 | direction;
            for (std::int32_t j = rows.first; j <= rows.last; ++j) put(j, crossing);
            return;
        }
        const auto crossingIn = [&](std::int32_t j) { return a.x + ((heightOf(j) - a.y) * across) / up; };
        if (rows.last - rows.first < steppedRows) {
            for (std::int32_t j = rows.first; j <= rows.last; ++j)
                put(j, samplesBefore(crossingIn(j)) << 1 | direction);
            return;
        }
        auto place = static_cast<SteppedPlace>((crossingIn(rows.first) - left_) * (perPixel * wholePlace));
        const auto step = static_cast<SteppedPlace>(across / up * -wholePlace);
        for (std::int32_t j = rows.first; j <= rows.last; ++j, place += step) {
            const bool isSure = static_cast<std::uint32_t>(place) - nearSample < 0u - 2 * nearSample;
            const Crossing samples =
                isSure ? static_cast<Crossing>(place >> 32) + 1 : samplesBefore(crossingIn(j));
            put(j, samples << 1 | direction);
        }
    }

    Crossing samplesBefore(double x) const {
        auto samples = static_cast<std::int32_t>((x - left_) * perPixel);
        if (left_ + sampleStep * samples < x) ++samples;
        return static_cast<Crossing>(std::clamp(samples, 0, columns_));
    }

    double heightOf(std::int32_t row) const { return top_ - sampleStep * row; }
    void put(std::int32_t row, Crossing crossing) {
        crossings_[rowStarts_[static_cast<std::size_t>(row)]++] = crossing;
    }

    // Most rows have two or four; which of two is less is nothing that a processor can foresee.
    static void sortFew(std::span<Crossing> crossings) {
        const auto order = [&](std::size_t i, std::size_t j) {
            const Crossing a = crossings[i];
            const Crossing b = crossings[j];
            crossings[i] = std::min(a, b);
            crossings[j] = std::max(a, b);
        };
        switch (crossings.size()) {
            case 0:
            case 1:
                return;
            case 2:
                return order(0, 1);
            case 4:
                order(0, 1);
                order(2, 3);
                order(0, 2);
                order(1, 3);
                return order(1, 2);
            default:
                std::sort(crossings.begin(), crossings.end());
        }
    }

    double left_;
    double top_;
    std::int32_t columns_;
    std::vector<CrossedRows>& crossed_;
    std::vector<std::uint32_t>& rowStarts_;
    std::vector<Crossing>& crossings_;
};

// The samples of one row of pixels, a bit for each that is inside, in words of sixteen pixels.
class PixelRow {
public:
    PixelRow(std::vector<std::uint64_t>& samples, std::int32_t width)
        : words_((static_cast<std::size_t>(width) + pixelsPerWord - 1) / pixelsPerWord), samples_(samples) {
        samples_.assign(words_ * perPixel, 0);
    }

    void addSampleRow(std::int32_t row, std::span<const Crossing> crossings) {
        std::uint64_t* words = samples_.data() + static_cast<std::size_t>(row) * words_;
        int winding = 0;
        for (const Crossing crossing : crossings) winding += directionOf(crossing);
        Crossing from = 0;
        for (const Crossing crossing : crossings) {
            const Crossing to = crossing >> 1;
            if (winding != 0 && to > from) set(words, from, to);
            winding -= directionOf(crossing);
            from = to;
        }
    }

    // Clears the samples. May write up to a word's pixels behind the row, but not behind `end`.
    void write(std::uint8_t* pixels, const std::uint8_t* end) {
        for (std::size_t i = 0; i < words_; ++i, pixels += pixelsPerWord) {
            std::uint64_t even = 0;
            std::uint64_t odd = 0;
            for (std::size_t row = 0; row < perPixel; ++row) {
                std::uint64_t& word = samples_[row * words_ + i];
                const std::uint64_t counts = countsOfFour(word);
                even += counts & inEachByte(15);
                odd += counts >> 4 & inEachByte(15);
                word = 0;
            }
            const std::uint64_t left = coverages(spread(even) | spread(odd) << 8);
            const std::uint64_t right = coverages(spread(even >> 32) | spread(odd >> 32) << 8);
            if (end - pixels >= std::ptrdiff_t{pixelsPerWord}) {
                store(pixels, left);
                store(pixels + 8, right);
                continue;
            }
            std::uint8_t bytes[pixelsPerWord];
            store(bytes, left);
            store(bytes + 8, right);
            std::copy_n(bytes, end - pixels, pixels);
        }
    }

private:
    static constexpr std::size_t pixelsPerWord = 64 / perPixel;

    static int directionOf(Crossing crossing) { return static_cast<int>(crossing & 1) * 2 - 1; }
    // The lowest byte first.
    static void store(std::uint8_t* to, std::uint64_t bytes) {
        if constexpr (std::endian::native == std::endian::little)
            std::memcpy(to, &bytes, 8);
        else
            for (int i = 0; i < 8; ++i) to[i] = static_cast<std::uint8_t>(bytes >> (i * 8));
    }
    static void set(std::uint64_t* words, Crossing from, Crossing to) {
        constexpr std::uint64_t all = ~std::uint64_t{0};
        const Crossing last = to - 1;
        const std::uint64_t head = all << (from % 64);
        const std::uint64_t tail = all >> (63 - last % 64);
        if (from / 64 == last / 64) {
            words[from / 64] |= head & tail;
            return;
        }
        words[from / 64] |= head;
        for (Crossing word = from / 64 + 1; word < last / 64; ++word) words[word] = all;
        words[last / 64] |= tail;
    }
    static constexpr std::uint64_t inEachByte(std::uint64_t value) { return value * 0x0101010101010101u; }
    // Of the bits in each four.
    static std::uint64_t countsOfFour(std::uint64_t bits) {
        bits -= bits >> 1 & inEachByte(0x55);
        return (bits & inEachByte(0x33)) + (bits >> 2 & inEachByte(0x33));
    }
    // The lower four bytes, each with an empty one above it.
    static std::uint64_t spread(std::uint64_t bytes) {
        bytes &= 0xffffffffu;
        bytes = (bytes | bytes << 16) & 0x0000ffff0000ffffu;
        return (bytes | bytes << 8) & 0x00ff00ff00ff00ffu;
    }
    // n * 255 / 16 without its fraction for n samples, 0 to 16: 0 or 16 * (n - 1) + 15.
    static std::uint64_t coverages(std::uint64_t samples) {
        const std::uint64_t ones = (samples + inEachByte(127)) >> 7 & inEachByte(1);
        return (samples - ones) << 4 | ones * 15;
    }

    std::size_t words_;
    std::vector<std::uint64_t>& samples_;
};

bool fitsBitmap(const OutlineBuilder& builder) {
    const double width = std::ceil(builder.max_x) - std::floor(builder.min_x) + 2;
    const double height = std::ceil(builder.max_y) - std::floor(builder.min_y) + 2;
    // Written so that a coordinate that is no number fails.
    return builder.min_x > -maximumCoordinate && builder.max_x < maximumCoordinate &&
           builder.min_y > -maximumCoordinate && builder.max_y < maximumCoordinate && width <= maximumSide &&
           height <= maximumSide && width * height <= maximumPixels;
}

}  // namespace

void OutlineBuilder::move_to(const Point& point) {
    if (open && current != start) segments.push_back({current, start});
    start = point;
    current = point;
    open = true;
    include(point);
}

void OutlineBuilder::line_to(const Point& point) {
    if (!open) return move_to(point);
    if (point != current) segments.push_back({current, point});
    current = point;
    include(point);
}

void OutlineBuilder::close_contour() {
    if (current != start) segments.push_back({current, start});
    open = false;
    current = start;
}

void OutlineBuilder::clear() {
    segments.clear();
    open = false;
    has_bounds = false;
    start = {};
    current = {};
}

void OutlineBuilder::include(const Point& point) {
    if (!has_bounds) {
        min_x = max_x = point.x;
        min_y = max_y = point.y;
        has_bounds = true;
        return;
    }
    min_x = std::min(min_x, point.x);
    max_x = std::max(max_x, point.x);
    min_y = std::min(min_y, point.y);
    max_y = std::max(max_y, point.y);
    // The box would pass over what is no number; it has to be refused.
    if (std::isnan(point.x + point.y)) max_x = point.x + point.y;
}

void flatten_quadratic_recursive(OutlineBuilder& builder, const Point& p0, const Point& control,
                                 const Point& p2, int depth) {
    Point from = p0;
    Point pull = control;
    while (depth < maximumDepth &&
           !(distanceSquared(pull, middle(from, p2)) <= flatDistance * flatDistance)) {
        const Point q0 = middle(from, pull);
        const Point q1 = middle(pull, p2);
        const Point split = middle(q0, q1);
        ++depth;
        flatten_quadratic_recursive(builder, from, q0, split, depth);
        from = split;
        pull = q1;
    }
    builder.line_to(p2);
}

void flatten_cubic_recursive(OutlineBuilder& builder, const Point& p0, const Point& control1,
                             const Point& control2, const Point& p3, int depth) {
    // Each control point against where a straight, evenly paced cubic would have it.
    const Point third{p0.x + (p3.x - p0.x) / 3, p0.y + (p3.y - p0.y) / 3};
    const Point twoThirds{p3.x - (p3.x - p0.x) / 3, p3.y - (p3.y - p0.y) / 3};
    const double distance = std::max(distanceSquared(control1, third), distanceSquared(control2, twoThirds));
    if (depth >= maximumDepth || distance <= flatCubicDistance * flatCubicDistance)
        return builder.line_to(p3);
    const Point a = middle(p0, control1);
    const Point b = middle(control1, control2);
    const Point c = middle(control2, p3);
    const Point ab = middle(a, b);
    const Point bc = middle(b, c);
    const Point split = middle(ab, bc);
    flatten_cubic_recursive(builder, p0, a, ab, split, depth + 1);
    flatten_cubic_recursive(builder, split, bc, c, p3, depth + 1);
}

GlyphBitmap rasterize_outline(const OutlineBuilder& builder, double advance) {
    return OutlineRasteriser().rasterize(builder, advance);
}

GlyphBitmap OutlineRasteriser::rasterize(const OutlineBuilder& builder, double advance) {
    GlyphBitmap bitmap;
    bitmap.advance = advance;
    if (builder.segments.empty() || !builder.has_bounds || !fitsBitmap(builder)) return bitmap;
    const auto left = static_cast<std::int32_t>(std::floor(builder.min_x)) - 1;
    const auto top = static_cast<std::int32_t>(std::ceil(builder.max_y)) + 1;
    const auto width = static_cast<std::int32_t>(std::ceil(builder.max_x)) - left + 1;
    const auto height = top - static_cast<std::int32_t>(std::floor(builder.min_y)) + 1;

    CrossingTable crossings(scratch_, left + firstSample, top - firstSample, width * perPixel,
                            height * perPixel);
    if (!crossings.fill(builder.segments)) return bitmap;
    bitmap.left = left;
    bitmap.top = top;
    bitmap.width = width;
    bitmap.height = height;
    const auto rowBytes = static_cast<std::size_t>(width);
    bitmap.pixels.resize(rowBytes * static_cast<std::size_t>(height));
    const std::uint8_t* end = bitmap.pixels.data() + bitmap.pixels.size();
    PixelRow pixelRow(scratch_.samples, width);
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t k = 0; k < perPixel; ++k) pixelRow.addSampleRow(k, crossings.row(y * perPixel + k));
        pixelRow.write(bitmap.pixels.data() + static_cast<std::size_t>(y) * rowBytes, end);
    }
    return bitmap;
}

}  // namespace kelmora
