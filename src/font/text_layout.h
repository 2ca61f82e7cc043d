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

// How wide a line gets that is set letter by letter; the width `layOutLine` gives the whole of it.
class LineWidth {
public:
    explicit LineWidth(FontHandle& font);
    void add(std::uint32_t codepoint);
    LayoutUnit width() const;

private:
    FontHandle& font_;
    double scale_;
    double pen_ = 0;
    LayoutUnit minX_ = 0;      // of the glyphs that have pixels, and not above 0
    LayoutUnit maxRight_ = 0;  // likewise, and not below 0
};

struct TextSize {
    LayoutUnit width;
    LayoutUnit height;
};

// Of the picture of several lines.
TextSize sizeOfLines(FontHandle& font, const std::vector<std::vector<std::uint32_t>>& lines);

// Sets one line. What overhangs to the left or above moves the whole line rather than being cut.
LineLayout layOutLine(FontHandle& font, const std::vector<std::uint32_t>& codepoints);

}  // namespace kelmora
