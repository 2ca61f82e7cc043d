#include "workbench/text_positions.h"

#include <gtest/gtest.h>

namespace kelmora {
namespace {

TEST(TextPositions, CountUnitsOfUtf16) {
    const std::string_view text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xB2z\r\n\n\xFF\xC3(";
    const TextPositions positions(text);
    // Bytes, and their columns: a 0, é 1, € 2, a die 3 and 4, z 5.
    for (const auto& [offset, line, column] : {std::tuple{0, 0, 0},
                                               {1, 0, 1},
                                               {3, 0, 2},
                                               {6, 0, 3},
                                               {10, 0, 5},
                                               {11, 0, 6},
                                               {13, 1, 0},
                                               {14, 2, 0},
                                               {15, 2, 1},
                                               {16, 2, 2},
                                               {17, 2, 3}}) {
        const TextPosition wanted{static_cast<std::uint32_t>(line), static_cast<std::uint32_t>(column)};
        EXPECT_EQ(positions.at(static_cast<std::size_t>(offset)), wanted) << offset;
        EXPECT_EQ(positions.offset(wanted), static_cast<std::size_t>(offset));
    }
    EXPECT_EQ(positions.at(8), (TextPosition{0, 3}));
    EXPECT_EQ(positions.offset({0, 4}), 6u);
    EXPECT_EQ(positions.offset({0, 99}), 11u);
    EXPECT_EQ(positions.offset({9, 0}), text.size());
    EXPECT_EQ(TextPositions("").offset({0, 5}), 0u);
}

}  // namespace
}  // namespace kelmora
