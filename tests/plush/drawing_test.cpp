#include "plush/drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <vector>

#include "plush/mix.h"

namespace kelmora {
namespace {

constexpr int side = 40;
constexpr PlushColour red{250, 10, 20, 255};
constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();

// A picture whose pixels are all different, with a guard around it.
class Sheet {
public:
    Sheet() : bytes_(side * side * 4 + 64) {
        std::uint32_t state = 5;
        for (unsigned char& byte : bytes_)
            byte = static_cast<unsigned char>((state = state * 1664525u + 99u) >> 24);
        before_ = bytes_;
    }
    PlushImage image() { return {side, side, bytes_.data() + 32, 0, 0, nullptr}; }
    const unsigned char* at(int x, int y) const { return bytes_.data() + 32 + (y * side + x) * 4; }
    const unsigned char* beforeAt(int x, int y) const { return before_.data() + 32 + (y * side + x) * 4; }
    bool changed(int x, int y) const { return std::memcmp(at(x, y), beforeAt(x, y), 4) != 0; }
    bool guardHolds() const {
        return std::equal(bytes_.begin(), bytes_.begin() + 32, before_.begin()) &&
               std::equal(bytes_.end() - 32, bytes_.end(), before_.end() - 32);
    }
    // Every pixel is the old one mixed with the colour by its coverage, give or take one of 255 parts.
    void expect(PlushColour colour, const std::function<double(int, int)>& coverage) const {
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) {
                const double exact = colour.a * std::clamp(coverage(x, y), 0.0, 1.0);
                bool found = false;
                for (const double alpha : {std::floor(exact + 0.499), std::floor(exact + 0.501)}) {
                    unsigned char pixel[4];
                    std::memcpy(pixel, beforeAt(x, y), 4);
                    const unsigned char source[4] = {colour.r, colour.g, colour.b,
                                                     static_cast<unsigned char>(alpha)};
                    mixPixel(pixel, source);
                    found = found || std::memcmp(pixel, at(x, y), 4) == 0;
                }
                ASSERT_TRUE(found) << x << " " << y << " coverage " << exact / colour.a;
            }
        EXPECT_TRUE(guardHolds());
    }

private:
    std::vector<unsigned char> bytes_;
    std::vector<unsigned char> before_;
};

double roundBox(const BoxShape& box, double radius, int px, int py) {
    const double x = px + 0.5 - box.x;
    const double y = py + 0.5 - box.y;
    if (x < 0 || y < 0 || x > box.width || y > box.height) return 0;
    const double dx = std::max(radius - x, x - (box.width - radius));
    const double dy = std::max(radius - y, y - (box.height - radius));
    return dx <= 0 || dy <= 0 ? 1 : radius + 0.5 - std::hypot(dx, dy);
}

TEST(Drawing, RectanglesAreMixedAndCut) {
    for (const int opacity : {255, 128, 1, 0})
        for (const BoxShape& box :
             {BoxShape{3, 4, 10, 1}, BoxShape{-5, 30, 20, 100}, BoxShape{0, 0, side, side},
              BoxShape{39, 39, 1, 1}, BoxShape{least, least, most, most}, BoxShape{-7, -7, most, most},
              BoxShape{5, 5, 0, 9}, BoxShape{5, 5, 9, -9}}) {
            Sheet sheet;
            const PlushColour colour{250, 10, 20, static_cast<unsigned char>(opacity)};
            fillBox(sheet.image(), box, colour);
            sheet.expect(colour, [&](int x, int y) {
                const bool inside = x >= box.x && std::int64_t{x} < std::int64_t{box.x} + box.width &&
                                    y >= box.y && std::int64_t{y} < std::int64_t{box.y} + box.height;
                return inside ? 1.0 : 0.0;
            });
        }
}

TEST(Drawing, RoundCornersAreSmooth) {
    for (const BoxShape& box :
         {BoxShape{4, 5, 30, 20, 8}, BoxShape{-6, 10, 25, 13, 100}, BoxShape{10, 10, 9, 9, 4},
          BoxShape{20, -3, 60, 60, 20}, BoxShape{3, 3, 2, 2, 1}}) {
        Sheet sheet;
        fillBox(sheet.image(), box, red);
        const double radius = std::min<int>(box.radius, std::min(box.width, box.height) / 2);
        sheet.expect(red, [&](int x, int y) { return roundBox(box, radius, x, y); });
    }
    Sheet sheet;
    fillBox(sheet.image(), {4, 5, 30, 20, 8}, red);
    EXPECT_FALSE(sheet.changed(4, 5));
    EXPECT_TRUE(sheet.changed(12, 5));
}

TEST(Drawing, OutlinesAreTheBoxLessItsInside) {
    const BoxShape box{3, 4, 31, 22, 9};
    for (const std::int32_t thickness : {1, 3, 9, 10, 11, 500}) {
        Sheet sheet;
        outlineBox(sheet.image(), box, thickness, red);
        const int t = std::min(thickness, 100);
        const BoxShape inner{box.x + t, box.y + t, box.width - 2 * t, box.height - 2 * t};
        sheet.expect(red, [&](int x, int y) {
            const bool hollow = inner.width > 0 && inner.height > 0;
            const double inside =
                hollow ? std::clamp(roundBox(inner, std::max(9 - t, 0), x, y), 0.0, 1.0) : 0;
            return std::clamp(roundBox(box, 9, x, y), 0.0, 1.0) - inside;
        });
    }
    Sheet sheet;
    outlineBox(sheet.image(), box, 0, red);
    outlineBox(sheet.image(), box, -4, red);
    sheet.expect(red, [](int, int) { return 0.0; });
}

TEST(Drawing, LinesAreAsThickAsAskedAndRoundAtTheEnds) {
    for (const LineShape& line :
         {LineShape{5, 5, 30, 5, 1}, LineShape{5, 5, 5, 30, 2}, LineShape{2, 3, 36, 17, 1},
          LineShape{36, 30, 2, 3, 4.5}, LineShape{20, 20, 20, 20, 7}, LineShape{-50, 20, 90, 25, 3},
          LineShape{10, -70, 12, 80, 0.5}}) {
        Sheet sheet;
        drawLine(sheet.image(), line, red);
        sheet.expect(red, [&](int x, int y) {
            const double dx = line.x2 - line.x1;
            const double dy = line.y2 - line.y1;
            const double length = dx * dx + dy * dy;
            const double part =
                length > 0 ? std::clamp(((x - line.x1) * dx + (y - line.y1) * dy) / length, 0.0, 1.0) : 0;
            return line.thickness / 2 + 0.5 - std::hypot(x - line.x1 - dx * part, y - line.y1 - dy * part);
        });
    }
}

TEST(Drawing, LinesWithoutEndOrThicknessAreHarmless) {
    Sheet sheet;
    drawLine(sheet.image(), {0, 0, 30, 30, 0}, red);
    drawLine(sheet.image(), {0, 0, 30, 30, NAN}, red);
    drawLine(sheet.image(), {0, -200, 30, -100, 3}, red);
    sheet.expect(red, [](int, int) { return 0.0; });
    drawLine(sheet.image(), {least, least, most, most, 1}, red);
    EXPECT_TRUE(sheet.changed(20, 20));
    EXPECT_FALSE(sheet.changed(20, 25));
    drawLine(sheet.image(), {0, 0, 1, 1, INFINITY}, red);
    EXPECT_TRUE(sheet.changed(39, 0));
    EXPECT_TRUE(sheet.guardHolds());
}

}  // namespace
}  // namespace kelmora
