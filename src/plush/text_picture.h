#pragma once

#include <cstdint>
#include <string>

#include "image/plush_image.h"

namespace kelmora {

enum class TextForm { Characters, TrueColour };

// A picture as lines of text of so many columns and rows, over black: characters of growing weight, or two
// coloured pixels a character for terminals that show them. Empty for a size below 1; sizes are cut to 1000.
std::string textPicture(const PlushImage& image, std::int32_t columns, std::int32_t rows, TextForm form);

}  // namespace kelmora
