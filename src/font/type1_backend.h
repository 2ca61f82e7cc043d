#pragma once

#include <unordered_map>

#include "font/font_backend.h"
#include "font/outline_rasteriser.h"
#include "font/type1_file.h"

namespace kelmora {

// Type 1 fonts. Characters are found by the names of the glyphs; hints and kerning are not used.
class Type1Backend : public FontBackend {
public:
    Type1Backend() = default;
    Type1Backend(const Type1Backend&) = delete;
    Type1Backend& operator=(const Type1Backend&) = delete;

    [[nodiscard]] bool load(const std::vector<std::uint8_t>& bytes) override;
    GlyphBitmap rasterize(std::uint32_t codepoint, double scale) override;
    double units_per_em() const override { return unitsPerEm_; }
    double ascent() const override;
    double descent() const override;
    double line_gap() const override { return 0; }
    int metric_rounding() const override { return 1; }

private:
    void readMatrix();
    void mapCharacters();
    const Charstring* programOf(std::uint32_t codepoint) const;

    Type1File file_;
    double unitsPerEm_ = 1000;
    std::unordered_map<std::uint32_t, const Charstring*> characters_;
    const Charstring* notdef_ = nullptr;
    OutlineBuilder builder_;  // kept for its memory, and so is
    OutlineRasteriser rasteriser_;
};

}  // namespace kelmora
