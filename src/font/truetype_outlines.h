#pragma once

#include <vector>

#include "font/affine_transform.h"
#include "font/font_bytes.h"
#include "font/outline_rasteriser.h"

namespace kelmora {

// Reads the glyphs of one font into outlines.
class GlyphOutlines {
public:
    // `offsets` are one more than there are glyphs, each inside the glyph data that starts at `glyphData` of
    // the file; both stay borrowed.
    void bind(FontBytes file, std::size_t glyphData, const std::vector<std::uint32_t>& offsets);
    // One whole glyph. False when it is malformed; the builder then holds a part of it.
    bool append(std::uint16_t glyph, const AffineTransform& transform, OutlineBuilder& builder);

private:
    struct ContourPoint {
        Point place;
        bool onCurve;
    };
    struct RawPoint {
        std::int16_t x;
        std::int16_t y;
        std::uint8_t flags;
    };

    bool append_glyph_outline(std::uint16_t glyph, const AffineTransform& transform, OutlineBuilder& builder,
                              int depth);
    bool appendComposite(std::size_t at, std::size_t end, const AffineTransform& transform,
                         OutlineBuilder& builder, int depth);
    bool appendSimple(std::size_t at, std::size_t contours, const AffineTransform& transform,
                      OutlineBuilder& builder);
    bool readPoints(FontBytes data, std::size_t at, std::size_t count);
    void listContour(std::size_t first, std::size_t last, const AffineTransform& transform);
    bool drawContour(OutlineBuilder& builder) const;

    FontBytes file_;
    std::size_t glyphData_ = 0;
    const std::vector<std::uint32_t>* offsets_ = nullptr;
    // What one glyph may still use.
    int componentsLeft_ = 0;
    std::size_t pointsLeft_ = 0;
    std::vector<RawPoint> points_;
    std::vector<ContourPoint> contour_;
};

}  // namespace kelmora
