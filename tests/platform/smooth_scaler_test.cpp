#include "platform/smooth_scaler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace kelmora {
namespace {

using Picture = std::vector<std::uint32_t>;

Picture noise(int width, int height) {
    Picture pixels(static_cast<std::size_t>(width * height));
    std::uint32_t state = 7;
    for (std::uint32_t& pixel : pixels) {
        state = state * 1664525u + 1013904223u;
        pixel = state | 0xff000000u;
    }
    return pixels;
}

Picture scaled(const Picture& picture, int width, int height, int drawnWidth, int drawnHeight) {
    SmoothScaler scaler;
    scaler.prepare(width, height, drawnWidth, drawnHeight);
    Picture out(static_cast<std::size_t>(drawnWidth * drawnHeight));
    const auto bring = [&](int row) {
        if (!scaler.holds(row))
            scaler.bring(row, {picture.data() + static_cast<std::size_t>(row * width),
                               static_cast<std::size_t>(width)});
    };
    for (int y = 0; y < drawnHeight; ++y) {
        const SmoothScaler::Between between = scaler.rowsAt(y);
        bring(between.upper);
        bring(between.lower);
        scaler.mix(between, out.data() + static_cast<std::size_t>(y * drawnWidth));
    }
    return out;
}

double channelOf(std::uint32_t pixel, int channel) {
    return pixel >> (channel * 8) & 255;
}

// The same in real numbers.
double exactChannel(const Picture& picture, int width, int height, double x, double y, int channel) {
    x = std::clamp(x, 0.0, width - 1.0);
    y = std::clamp(y, 0.0, height - 1.0);
    const int left = static_cast<int>(x);
    const int top = static_cast<int>(y);
    const int right = std::min(left + 1, width - 1);
    const int bottom = std::min(top + 1, height - 1);
    const auto at = [&](int column, int row) {
        return channelOf(picture[static_cast<std::size_t>(row * width + column)], channel);
    };
    const double above = at(left, top) + (at(right, top) - at(left, top)) * (x - left);
    const double below = at(left, bottom) + (at(right, bottom) - at(left, bottom)) * (x - left);
    return above + (below - above) * (y - top);
}

TEST(SmoothScaler, MixesTheNearestFourPixels) {
    struct Sizes {
        int width, height, drawnWidth, drawnHeight;
    };
    for (const Sizes& s : {Sizes{7, 5, 14, 10}, Sizes{7, 5, 23, 31}, Sizes{1, 1, 9, 3}, Sizes{30, 20, 11, 7},
                           Sizes{2, 40, 3, 41}, Sizes{1, 6, 1, 60}}) {
        const Picture picture = noise(s.width, s.height);
        const Picture out = scaled(picture, s.width, s.height, s.drawnWidth, s.drawnHeight);
        for (int y = 0; y < s.drawnHeight; ++y)
            for (int x = 0; x < s.drawnWidth; ++x)
                for (int channel = 0; channel < 4; ++channel) {
                    const double exact =
                        exactChannel(picture, s.width, s.height, (x + 0.5) * s.width / s.drawnWidth - 0.5,
                                     (y + 0.5) * s.height / s.drawnHeight - 0.5, channel);
                    const double seen =
                        channelOf(out[static_cast<std::size_t>(y * s.drawnWidth + x)], channel);
                    // A 256th of a step each way and a half for each rounding.
                    ASSERT_NEAR(seen, exact, 3.1) << s.drawnWidth << " " << x << " " << y;
                }
    }
}

TEST(SmoothScaler, AFlatPictureStaysFlatAndAnUnscaledOneItself) {
    const Picture white(35, 0xffffffffu);
    for (const std::uint32_t pixel : scaled(white, 7, 5, 29, 13)) ASSERT_EQ(pixel, 0xffffffffu);
    const Picture picture = noise(9, 4);
    EXPECT_EQ(scaled(picture, 9, 4, 9, 4), picture);
}

// Bytes that both systems must give.
TEST(SmoothScaler, TheSumOfItsBytesIsSettled) {
    std::uint32_t sum = 0;
    for (const std::uint32_t pixel : scaled(noise(61, 37), 61, 37, 200, 121))
        sum = (sum << 5 | sum >> 27) ^ pixel;
    EXPECT_EQ(sum, 1333876969u);
}

}  // namespace
}  // namespace kelmora
