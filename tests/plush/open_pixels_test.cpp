#include "plush/scene/open_pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace kelmora {
namespace {

TEST(OpenPixels, EachPixelIsClosedOnce) {
    std::mt19937 random(4);
    for (const int width : {1, 63, 64, 65, 200}) {
        const int height = 3;
        OpenPixels open(width, height);
        std::vector<int> isClosed(static_cast<std::size_t>(width * height));
        const auto place = [&](int x, int y) { return static_cast<std::size_t>(y * width + x); };
        for (int round = 0; round < 400; ++round) {
            const int y = static_cast<int>(random() % height);
            const int first = static_cast<int>(random() % unsigned(width + 1));
            const int end = std::min(first + static_cast<int>(random() % 90), width);
            std::vector<int> seen, found, expected;
            const auto into = [](std::vector<int>& list) {
                return [&list](int start, int stop) {
                    for (int x = start; x < stop; ++x) list.push_back(x);
                };
            };
            for (int x = first; x < end; ++x) {
                ASSERT_EQ(open.isOpen(x, y), !isClosed[place(x, y)]);
                if (!isClosed[place(x, y)]) expected.push_back(x);
                isClosed[place(x, y)] = 1;
            }
            open.forEachOpen(y, first, end, into(seen));
            open.close(y, first, end, into(found));
            ASSERT_EQ(seen, expected);
            ASSERT_EQ(found, expected);
            const auto row = isClosed.begin() + y * width;
            ASSERT_EQ(open.isAnyOpen(y), std::count(row, row + width, 0) > 0);
            ASSERT_EQ(open.isAnyOpen(), std::count(isClosed.begin(), isClosed.end(), 0) > 0);
        }
        for (int y = 0; y < height; ++y) open.close(y, 0, width, [](int, int) {});
        EXPECT_FALSE(open.isAnyOpen());
    }
}

}  // namespace
}  // namespace kelmora
