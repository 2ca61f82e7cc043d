#include "font/text_layout.h"

#include <algorithm>
#include <cmath>

namespace kelmora {
namespace {

constexpr double farAway = 4294967296.0;

LayoutUnit toUnits(double pixels) {
    if (std::isnan(pixels)) return 0;
    return static_cast<LayoutUnit>(std::clamp(pixels, -farAway, farAway));
}

LayoutUnit roundMetric(const FontBackend& backend, double pixels) {
    return toUnits(backend.metric_rounding() == 1 ? std::round(pixels) : std::ceil(pixels));
}

// The box around the glyphs that have pixels.
struct Extent {
    void include(const GlyphPlacement& placement) {
        const LayoutUnit right = placement.x + placement.glyph->width;
        const LayoutUnit bottom = placement.y + placement.glyph->height;
        minX = empty ? placement.x : std::min(minX, placement.x);
        minY = empty ? placement.y : std::min(minY, placement.y);
        maxRight = empty ? right : std::max(maxRight, right);
        maxBottom = empty ? bottom : std::max(maxBottom, bottom);
        empty = false;
    }

    bool empty = true;
    LayoutUnit minX = 0;
    LayoutUnit minY = 0;
    LayoutUnit maxRight = 0;
    LayoutUnit maxBottom = 0;
};

}  // namespace

LineWidth::LineWidth(FontHandle& font)
    : font_(font), scale_(double{font.size} / font.backend->units_per_em()) {}

void LineWidth::add(std::uint32_t codepoint) {
    const GlyphBitmap& glyph = font_.glyph(codepoint, scale_);
    if (glyph.width > 0 && glyph.height > 0) {
        const LayoutUnit x = toUnits(std::floor(pen_)) + glyph.left;
        minX_ = std::min(minX_, x);
        maxRight_ = std::max(maxRight_, x + glyph.width);
    }
    pen_ += glyph.advance;
}

LayoutUnit LineWidth::width() const {
    return std::max<LayoutUnit>({maxRight_, toUnits(std::ceil(pen_)), 1}) - minX_;
}

TextSize sizeOfLines(FontHandle& font, const std::vector<std::vector<std::uint32_t>>& lines) {
    TextSize size{1, 0};
    for (const auto& line : lines) {
        const LineLayout laidOut = layOutLine(font, line);
        size.width = std::max(size.width, laidOut.width);
        size.height += laidOut.height;
    }
    return size;
}

LineLayout layOutLine(FontHandle& font, const std::vector<std::uint32_t>& codepoints) {
    FontBackend& backend = *font.backend;
    const double scale = double{font.size} / backend.units_per_em();
    const LayoutUnit baseline = std::max<LayoutUnit>(roundMetric(backend, scale * backend.ascent()), 1);
    const double lineUnits = backend.ascent() + backend.descent() + backend.line_gap();
    const LayoutUnit lineHeight = std::max<LayoutUnit>(roundMetric(backend, scale * lineUnits), 1);

    LineLayout line;
    line.height = lineHeight;
    if (codepoints.empty()) return line;
    line.glyphs.reserve(codepoints.size());
    Extent extent;
    double pen = 0;
    for (const std::uint32_t codepoint : codepoints) {
        const GlyphBitmap& glyph = font.glyph(codepoint, scale);
        const GlyphPlacement placement{&glyph, toUnits(std::floor(pen)) + glyph.left, baseline - glyph.top};
        if (glyph.width > 0 && glyph.height > 0) {
            line.glyphs.push_back(placement);
            extent.include(placement);
        }
        pen += glyph.advance;
    }
    const LayoutUnit shiftX = std::max<LayoutUnit>(-extent.minX, 0);
    const LayoutUnit shiftY = std::max<LayoutUnit>(-extent.minY, 0);
    line.width = std::max<LayoutUnit>({extent.maxRight, toUnits(std::ceil(pen)), 1}) + shiftX;
    line.height = std::max(extent.maxBottom, lineHeight) + shiftY;
    for (GlyphPlacement& placement : line.glyphs) {
        placement.x += shiftX;
        placement.y += shiftY;
    }
    return line;
}

}  // namespace kelmora
