#pragma once

#include <cstdint>
#include <vector>

#include "font/font_backend.h"

namespace kelmora {

// Pixels, y upwards.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct LineSegment {
    Point start;
    Point end;
};

// Collects a glyph's straight segments and the box of every point it was handed.
struct OutlineBuilder {
    void move_to(const Point& point);
    void line_to(const Point& point);
    // Ends the contour where it began.
    void close_contour();
    void clear();

    std::vector<LineSegment> segments;
    bool open = false;
    bool has_bounds = false;
    Point start;
    Point current;
    double min_x = 0;
    double max_x = 0;
    double min_y = 0;
    double max_y = 0;

private:
    void include(const Point& point);
};

// Segments of one glyph that its reader should not go beyond.
constexpr std::size_t maximumGlyphSegments = std::size_t{1} << 20;

// Call with depth 0. A curve is cut off at depth 10, which bounds it to 1024 segments.
void flatten_quadratic_recursive(OutlineBuilder& builder, const Point& p0, const Point& control,
                                 const Point& p2, int depth);
void flatten_cubic_recursive(OutlineBuilder& builder, const Point& p0, const Point& control1,
                             const Point& control2, const Point& p3, int depth);

// Coverage from a grid of 4 by 4 samples a pixel, by the nonzero winding rule, with a margin of one pixel.
// An outline more than 32 Ki pixels wide or high or of more than 64 Mi
// pixels, or an absurdly dense one, gives a blank glyph.
GlyphBitmap rasterize_outline(const OutlineBuilder& builder, double advance);

// The same for many glyphs, whose memory it keeps from one to the next.
class OutlineRasteriser {
public:
    using Crossing = std::uint32_t;
    // The sample rows that a segment crosses.
    struct CrossedRows {
        const LineSegment* segment;
        std::int32_t first;
        std::int32_t last;
    };
    struct Scratch {
        std::vector<CrossedRows> crossed;
        std::vector<std::uint32_t> rowStarts;
        std::vector<Crossing> crossings;
        std::vector<std::uint64_t> samples;
    };

    GlyphBitmap rasterize(const OutlineBuilder& builder, double advance);

private:
    Scratch scratch_;
};

}  // namespace kelmora
