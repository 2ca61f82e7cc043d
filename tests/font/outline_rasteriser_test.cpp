#include "font/outline_rasteriser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace kelmora {
namespace {

// Every sample against every segment.
bool isInside(const OutlineBuilder& outline, double sx, double sy) {
    int winding = 0;
    for (const auto& [a, b] : outline.segments) {
        const bool up = a.y <= sy && b.y > sy;
        const bool down = a.y > sy && b.y <= sy;
        if (!up && !down) continue;
        const double x = a.x + ((sy - a.y) * (b.x - a.x)) / (b.y - a.y);
        if (x > sx) winding += up ? 1 : -1;
    }
    return winding != 0;
}

std::vector<std::uint8_t> samplePixels(const OutlineBuilder& outline, const GlyphBitmap& shape) {
    std::vector<std::uint8_t> pixels;
    for (int row = 0; row < shape.height; ++row) {
        for (int column = 0; column < shape.width; ++column) {
            int inside = 0;
            for (int k = 0; k < 4; ++k)
                for (int i = 0; i < 4; ++i)
                    inside += isInside(outline, shape.left + column + 0.125 + 0.25 * i,
                                       shape.top - row - 0.125 - 0.25 * k);
            pixels.push_back(static_cast<std::uint8_t>(inside * 255 / 16));
        }
    }
    return pixels;
}

OutlineBuilder polygon(const std::vector<Point>& points) {
    OutlineBuilder outline;
    outline.move_to(points.front());
    for (const Point& point : points) outline.line_to(point);
    outline.close_contour();
    return outline;
}

// Coordinates that like to fall on samples, on pixels, right beside them, or anywhere.
class RandomOutlines {
public:
    OutlineBuilder next() {
        OutlineBuilder outline;
        const double centre = static_cast<double>(below(41)) - 20;
        for (unsigned contours = 1 + below(4); contours > 0; --contours) {
            outline.move_to(point(centre));
            for (unsigned i = below(12); i > 0; --i) {
                if (below(3) == 0) {
                    flatten_quadratic_recursive(outline, outline.current, point(centre), point(centre), 0);
                } else {
                    outline.line_to(point(centre));
                }
            }
            if (below(8) != 0) outline.close_contour();
        }
        return outline;
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    double coordinate(double centre) {
        const double eighths = centre + static_cast<double>(below(120)) / 8;
        switch (below(4)) {
            case 0:
                return eighths;
            case 1:
                return std::nextafter(eighths, below(2) != 0 ? 1e9 : -1e9);
            case 2:
                return std::floor(eighths);
            default:
                return centre + std::uniform_real_distribution<>(0, 15)(random_);
        }
    }
    Point point(double centre) { return {coordinate(centre), coordinate(centre)}; }

    std::mt19937 random_{7};
};

TEST(OutlineRasteriser, AgreesWithTestingEverySampleAgainstEverySegment) {
    RandomOutlines outlines;
    for (int i = 0; i < 500; ++i) {
        const OutlineBuilder outline = outlines.next();
        const GlyphBitmap bitmap = rasterize_outline(outline, i);
        EXPECT_EQ(bitmap.advance, i);
        ASSERT_EQ(bitmap.width == 0, outline.segments.empty());
        if (outline.segments.empty()) continue;
        ASSERT_EQ(bitmap.left, std::floor(outline.min_x) - 1);
        ASSERT_EQ(bitmap.top, std::ceil(outline.max_y) + 1);
        ASSERT_EQ(bitmap.width, std::ceil(outline.max_x) - std::floor(outline.min_x) + 2);
        ASSERT_EQ(bitmap.height, std::ceil(outline.max_y) - std::floor(outline.min_y) + 2);
        ASSERT_EQ(bitmap.pixels, samplePixels(outline, bitmap)) << "outline " << i;
    }
}

// Long edges through many samples: on slopes of whole samples each row's crossing falls on one.
TEST(OutlineRasteriser, LargeOutlinesAgreeToo) {
    std::mt19937 random(3);
    OutlineRasteriser rasteriser;
    for (int i = 0; i < 40; ++i) {
        std::vector<Point> points;
        for (int corner = 0; corner < 4; ++corner) {
            const auto eighths = [&] { return static_cast<double>(random() % 1600) / 8 + 0.125; };
            points.push_back({eighths(), eighths()});
        }
        if (i % 4 == 0) points[1].y = points[0].y + (points[1].x - points[0].x) * (i % 8 == 0 ? 1 : 0.5);
        const OutlineBuilder outline = polygon(points);
        const GlyphBitmap bitmap = rasteriser.rasterize(outline, 0);
        ASSERT_EQ(bitmap.pixels, samplePixels(outline, bitmap)) << "outline " << i;
    }
}

TEST(OutlineRasteriser, ASquareFillsItsPixelsWithinAMargin) {
    const GlyphBitmap bitmap = rasterize_outline(polygon({{0, 0}, {0, 8}, {8, 8}, {8, 0}}), 9.5);
    EXPECT_EQ(bitmap.left, -1);
    EXPECT_EQ(bitmap.top, 9);
    ASSERT_EQ(bitmap.width, 10);
    ASSERT_EQ(bitmap.height, 10);
    for (std::size_t i = 0; i < 100; ++i) {
        const bool border = i < 10 || i >= 90 || i % 10 == 0 || i % 10 == 9;
        EXPECT_EQ(bitmap.pixels[i], border ? 0 : 255) << i;
    }
}

TEST(OutlineRasteriser, OnlyOppositeContoursPunchHoles) {
    const auto middle = [](const std::vector<Point>& inner) {
        OutlineBuilder outline = polygon({{0, 0}, {0, 8}, {8, 8}, {8, 0}});
        const OutlineBuilder hole = polygon(inner);
        outline.segments.insert(outline.segments.end(), hole.segments.begin(), hole.segments.end());
        return rasterize_outline(outline, 0).pixels[5 * 10 + 5];
    };
    EXPECT_EQ(middle({{2, 2}, {6, 2}, {6, 6}, {2, 6}}), 0);
    EXPECT_EQ(middle({{2, 2}, {2, 6}, {6, 6}, {6, 2}}), 255);
}

TEST(OutlineRasteriser, BoxesComeFromPointsAndNotFromArea) {
    const GlyphBitmap flat = rasterize_outline(polygon({{0, 0}, {4, 4}}), 0);
    EXPECT_EQ(flat.width, 6);
    EXPECT_EQ(flat.pixels, std::vector<std::uint8_t>(36));
    EXPECT_EQ(rasterize_outline(polygon({{0, 2}, {4, 2}}), 0).pixels, std::vector<std::uint8_t>(12));
    OutlineBuilder stray = polygon({{0, 0}, {0, 1}, {1, 1}});
    stray.move_to({-5, 3});
    EXPECT_EQ(rasterize_outline(stray, 0).left, -6);
    OutlineBuilder dot;
    dot.move_to({3, 3});
    dot.line_to({3, 3});
    EXPECT_EQ(rasterize_outline(dot, 2).width, 0);
}

TEST(OutlineRasteriser, MovingOnClosesAnOpenContour) {
    OutlineBuilder outline;
    outline.line_to({0, 0});
    outline.line_to({0, 4});
    outline.line_to({4, 4});
    outline.move_to({9, 9});
    ASSERT_EQ(outline.segments.size(), 3u);
    EXPECT_EQ(outline.segments.back().end, (Point{0, 0}));
}

TEST(OutlineRasteriser, CurvesSplitUntilFlatOrTenDeep) {
    OutlineBuilder gentle;
    gentle.move_to({0, 0});
    flatten_quadratic_recursive(gentle, {0, 0}, {5, 0.35}, {10, 0}, 0);
    EXPECT_EQ(gentle.segments.size(), 1u);
    flatten_quadratic_recursive(gentle, {10, 0}, {15, 0.36}, {20, 0}, 0);
    EXPECT_EQ(gentle.segments.size(), 3u);
    OutlineBuilder wild;
    wild.move_to({0, 0});
    flatten_quadratic_recursive(wild, {0, 0}, {1e9, 1e9}, {2e9, 0}, 0);
    EXPECT_EQ(wild.segments.size(), 1024u);
    wild.clear();
    wild.move_to({0, 0});
    flatten_cubic_recursive(wild, {0, 0}, {0, 1e9}, {1e9, 1e9}, {2e9, 0}, 0);
    EXPECT_EQ(wild.segments.size(), 1024u);
}

TEST(OutlineRasteriser, AbsurdOutlinesAreBlank) {
    EXPECT_EQ(rasterize_outline(polygon({{0, 0}, {0, 1e12}, {8, 8}}), 0).width, 0);
    EXPECT_EQ(rasterize_outline(polygon({{0, 0}, {0, NAN}, {8, 8}}), 0).width, 0);
    EXPECT_EQ(rasterize_outline(polygon({{0, 0}, {30000, 30000}, {8, 8}}), 0).width, 0);
    std::vector<Point> hatch;
    for (int i = 0; i < 3000; ++i) hatch.push_back({i * 0.3, i % 2 == 0 ? 0.0 : 30000.0});
    EXPECT_EQ(rasterize_outline(polygon(hatch), 0).width, 0);
}

}  // namespace
}  // namespace kelmora
