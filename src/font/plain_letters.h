#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "image/plush_image.h"

namespace kelmora {

// Letters for when no font may be had: dots of 5 by 9 in cells of 6 by 11, times a whole scale. They know
// ASCII; of other characters accented letters of western Europe lose their accents, and most show as a box.
struct PlainLetters {
    static constexpr int cellWidth = 6;
    static constexpr int cellHeight = 11;

    using Colour = std::array<unsigned char, 3>;

    // One line of UTF-8, its first cell's corner at (x, y). What is outside the picture is left out.
    static void draw(PlushImage& picture, std::string_view text, int x, int y, int scale, Colour colour);
    static void fill(PlushImage& picture, int x, int y, int width, int height, Colour colour);
    // In cells.
    static std::size_t lengthOf(std::string_view text);
    // Lines of at most so many cells, broken at blanks where there are some; what goes on is indented as its
    // line.
    static std::vector<std::string> wrap(std::string_view text, std::size_t cells);
};

}  // namespace kelmora
