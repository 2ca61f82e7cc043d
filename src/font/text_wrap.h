#pragma once

#include <string>
#include <string_view>

#include "font/text_layout.h"

namespace kelmora {

// The text with line feeds put in, so that no line is wider than so many pixels where that can be. Lines
// break at blanks, which are dropped there, behind hyphens and between ideographs; a word that is too wide
// for a line of its own breaks between letters. Each line keeps one letter at least.
std::string wrapText(FontHandle& font, std::string_view text, LayoutUnit width);

}  // namespace kelmora
