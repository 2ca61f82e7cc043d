#pragma once

#include "font/font_backend.h"
#include "font/truetype_cmap.h"
#include "font/truetype_outlines.h"

namespace kelmora {

// Fonts with TrueType outlines. Instructions and kerning are not used.
class TrueTypeBackend : public FontBackend {
public:
    TrueTypeBackend() = default;
    TrueTypeBackend(const TrueTypeBackend&) = delete;
    TrueTypeBackend& operator=(const TrueTypeBackend&) = delete;

    [[nodiscard]] bool load(const std::vector<std::uint8_t>& bytes) override;
    GlyphBitmap rasterize(std::uint32_t codepoint, double scale) override;
    double units_per_em() const override { return units_per_em_; }
    double ascent() const override { return ascent_; }
    double descent() const override { return descent_ < 0 ? 0 : descent_; }
    double line_gap() const override { return line_gap_ < 0 ? 0 : line_gap_; }
    int metric_rounding() const override { return 0; }

private:
    bool readDirectory();
    bool findTable(std::uint32_t tag, TableRecord& out) const;
    bool readMetrics();
    bool readGlyphOffsets();
    bool hasMetrics(std::uint16_t glyph) const;

    std::vector<std::uint8_t> data;
    FontBytes file_;
    std::unordered_map<std::uint32_t, TableRecord> tables;
    TableRecord cmap_;
    TableRecord glyf_;
    TableRecord loca_;
    TableRecord head_;
    TableRecord hhea_;
    TableRecord hmtx_;
    TableRecord maxp_;
    std::uint16_t units_per_em_ = 1;
    std::int16_t ascent_ = 0;
    std::int16_t descent_ = 0;
    std::int16_t line_gap_ = 0;
    std::uint16_t long_loca = 0;
    std::uint16_t num_glyphs = 0;
    std::uint16_t num_h_metrics = 0;
    std::vector<std::uint32_t> glyph_offsets;
    CharacterMap characters_;
    GlyphOutlines outlines_;
    OutlineBuilder builder_;  // kept for its memory, and so is
    OutlineRasteriser rasteriser_;
};

}  // namespace kelmora
