#include "font/outline_rasteriser.h"

#include <algorithm>
#include <array>
#include <cmath>
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

constexpr std::array<std::uint8_t, perPixel* perPixel + 1> coverageOfSamples = [] {
    std::array<std::uint8_t, perPixel * perPixel + 1> table{};
    for (std::size_t inside = 0; inside < table.size(); ++inside)
        table[inside] = static_cast<std::uint8_t>(inside * 255 / 16);
    return table;
}();

// The winding number of a sample row changes at crossings. Each is kept as the number of the row's samples
// that lie to its left, and its direction in the lowest bit.
using Crossing = std::uint32_t;

// The sample rows that a segment crosses.
struct CrossedRows {
    const LineSegment* segment;
    std::int32_t first;
    std::int32_t last;
};

// Finds every crossing once and groups them by sample row. Row j stands at `top - j / 4`, sample m of a row
// at `left + m / 4`; both are exact in double, so comparing against them decides just as testing each sample
// against each segment would.
class CrossingTable {
public:
    CrossingTable(double left, double top, std::int32_t columns, std::int32_t rows)
        : left_(left), top_(top), columns_(columns), rowStarts_(static_cast<std::size_t>(rows) + 2) {}

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
    void collectRows(std::span<const LineSegment> segments) {
        crossed_.reserve(segments.size());
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
        std::size_t total = 0;
        std::size_t count = 0;
        for (std::size_t j = 1; j < rowStarts_.size(); ++j) {
            count += rowStarts_[j];
            rowStarts_[j - 1] = total;
            total += count;
            if (total > maximumCrossings) return false;
        }
        crossings_.resize(total);
        return true;
    }

    void addCrossings(const CrossedRows& rows) {
        const Point a = rows.segment->start;
        const Point b = rows.segment->end;
        const double across = b.x - a.x;
        const double up = b.y - a.y;
        const Crossing direction = a.y < b.y ? 1 : 0;
        if (a.x == b.x) {
            const Crossing crossing = crossingAt(a.x, direction);
            for (std::int32_t j = rows.first; j <= rows.last; ++j) put(j, crossing);
            return;
        }
        for (std::int32_t j = rows.first; j <= rows.last; ++j) {
            const double x = a.x + ((heightOf(j) - a.y) * across) / up;
            put(j, crossingAt(x, direction));
        }
    }

    Crossing crossingAt(double x, Crossing direction) const {
        auto samples = static_cast<std::int32_t>((x - left_) * perPixel);
        if (left_ + sampleStep * samples < x) ++samples;
        return static_cast<Crossing>(std::clamp(samples, 0, columns_)) << 1 | direction;
    }

    double heightOf(std::int32_t row) const { return top_ - sampleStep * row; }
    void put(std::int32_t row, Crossing crossing) {
        crossings_[rowStarts_[static_cast<std::size_t>(row)]++] = crossing;
    }

    static void sortFew(std::span<Crossing> crossings) {
        if (crossings.size() < 2) return;
        if (crossings.size() > 32) return std::sort(crossings.begin(), crossings.end());
        for (std::size_t i = 1; i < crossings.size(); ++i) {
            const Crossing moved = crossings[i];
            std::size_t at = i;
            for (; at > 0 && crossings[at - 1] > moved; --at) crossings[at] = crossings[at - 1];
            crossings[at] = moved;
        }
    }

    double left_;
    double top_;
    std::int32_t columns_;
    std::vector<CrossedRows> crossed_;
    std::vector<std::size_t> rowStarts_;
    std::vector<Crossing> crossings_;
};

// Counts the samples inside, for one row of pixels, as changes from each pixel to the next.
class PixelRow {
public:
    explicit PixelRow(std::int32_t width) : changes_(static_cast<std::size_t>(width) + 2) {}

    void addSampleRow(std::span<const Crossing> crossings) {
        int winding = 0;
        for (const Crossing crossing : crossings) winding += directionOf(crossing);
        Crossing from = 0;
        for (const Crossing crossing : crossings) {
            const Crossing to = crossing >> 1;
            if (winding != 0 && to > from) {
                addFrom(from, 1);
                addFrom(to, -1);
            }
            winding -= directionOf(crossing);
            from = to;
        }
    }

    void write(std::span<std::uint8_t> pixels) {
        int* changes = changes_.data();
        int inside = 0;
        for (std::uint8_t& pixel : pixels) {
            inside += *changes;
            *changes++ = 0;
            pixel = coverageOfSamples[static_cast<std::size_t>(inside)];
        }
    }

private:
    static int directionOf(Crossing crossing) { return static_cast<int>(crossing & 1) * 2 - 1; }

    // All samples from `sample` to the end of the row.
    void addFrom(Crossing sample, int sign) {
        const int missing = sign * static_cast<int>(sample % perPixel);
        int* change = changes_.data() + sample / perPixel;
        change[0] += sign * perPixel - missing;
        change[1] += missing;
    }

    std::vector<int> changes_;
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
    GlyphBitmap bitmap;
    bitmap.advance = advance;
    if (builder.segments.empty() || !builder.has_bounds || !fitsBitmap(builder)) return bitmap;
    const auto left = static_cast<std::int32_t>(std::floor(builder.min_x)) - 1;
    const auto top = static_cast<std::int32_t>(std::ceil(builder.max_y)) + 1;
    const auto width = static_cast<std::int32_t>(std::ceil(builder.max_x)) - left + 1;
    const auto height = top - static_cast<std::int32_t>(std::floor(builder.min_y)) + 1;

    CrossingTable crossings(left + firstSample, top - firstSample, width * perPixel, height * perPixel);
    if (!crossings.fill(builder.segments)) return bitmap;
    bitmap.left = left;
    bitmap.top = top;
    bitmap.width = width;
    bitmap.height = height;
    const auto rowBytes = static_cast<std::size_t>(width);
    bitmap.pixels.resize(rowBytes * static_cast<std::size_t>(height));
    PixelRow pixelRow(width);
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t k = 0; k < perPixel; ++k) pixelRow.addSampleRow(crossings.row(y * perPixel + k));
        pixelRow.write({bitmap.pixels.data() + static_cast<std::size_t>(y) * rowBytes, rowBytes});
    }
    return bitmap;
}

}  // namespace kelmora
