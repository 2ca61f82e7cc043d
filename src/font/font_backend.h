#pragma once

#include <cstdint>
#include <vector>

namespace kelmora {

// One rasterised glyph. Its first row lands at `baseline - top`, its first column at `pen + left`.
struct GlyphBitmap {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;  // 0 by 0 for a blank glyph
    std::int32_t height = 0;
    double advance = 0;                // pixels, unrounded
    std::vector<std::uint8_t> pixels;  // coverage, row-major, top row first
};

// Parser and rasteriser of one font file. Not safe for use from two threads at once.
class FontBackend {
public:
    virtual ~FontBackend() = default;

    // Keeps a copy of the bytes. False when the file can't be used.
    [[nodiscard]] virtual bool load(const std::vector<std::uint8_t>& bytes) = 0;
    // `scale` is pixels per font unit. A glyph that can't be drawn is blank.
    virtual GlyphBitmap rasterize(std::uint32_t codepoint, double scale) = 0;
    virtual double units_per_em() const = 0;
    // Font units; the descent counts downwards.
    virtual double ascent() const = 0;
    virtual double descent() const = 0;
    virtual double line_gap() const = 0;
    // 1: vertical metrics are rounded to nearest; else upwards.
    virtual int metric_rounding() const = 0;
};

}  // namespace kelmora
