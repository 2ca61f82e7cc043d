#pragma once

#include <cstdint>
#include <vector>

#include "font/font_service.h"

namespace kelmora {

// Pixels. Wide enough that no font and size overflow it.
using LayoutUnit = std::int64_t;

struct GlyphPlacement {
    const GlyphBitmap* glyph;  // in the font's cache
    LayoutUnit x;              // of the bitmap's first pixel, in its line
    LayoutUnit y;
};

struct LineLayout {
    LayoutUnit width = 1;
    LayoutUnit height = 1;
    std::vector<GlyphPlacement> glyphs;
};

// Sets one line. What overhangs to the left or above moves the whole line rather than being cut.
LineLayout layOutLine(FontHandle& font, const std::vector<std::uint32_t>& codepoints);

}  // namespace kelmora
