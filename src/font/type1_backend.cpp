#include "font/type1_backend.h"

#include <algorithm>
#include <cmath>

#include "font/type1_charstring.h"
#include "font/type1_glyph_names.h"

namespace kelmora {
namespace {

// Where a font has no box of its own, the usual share of an em.
constexpr double usualAscent = 0.8;
constexpr double usualDescent = 0.2;

// Characters that fonts seldom name apart from the one they look like.
struct Lookalike {
    std::uint32_t codepoint;
    std::uint32_t stands;
};
constexpr std::array<Lookalike, 14> lookalikes{{
    {0x00A0, 0x0020},
    {0x00AD, 0x002D},
    {0x021A, 0x0162},
    {0x021B, 0x0163},
    {0x02C9, 0x00AF},
    {0x03BC, 0x00B5},
    {0x00B5, 0x03BC},
    {0x0394, 0x2206},
    {0x03A9, 0x2126},
    {0x2010, 0x002D},
    {0x2126, 0x03A9},
    {0x2206, 0x0394},
    {0x2215, 0x2044},
    {0x2219, 0x00B7},
}};

bool isSensible(double value) {
    return std::isfinite(value) && std::abs(value) < 1e6;
}

}  // namespace

bool Type1Backend::load(const std::vector<std::uint8_t>& bytes) {
    auto file = readType1File(bytes);
    if (!file) return false;
    file_ = std::move(*file);
    readMatrix();
    mapCharacters();
    return true;
}

// The em follows from the vertical scale; what remains of the matrix narrows or slants the glyphs.
void Type1Backend::readMatrix() {
    const std::array<double, 6> usual = Type1File().fontMatrix;
    auto& matrix = file_.fontMatrix;
    const double units = 1 / matrix[3];
    if (!(units >= 16 && units <= 65536) || !std::all_of(matrix.begin(), matrix.end(), isSensible))
        matrix = usual;
    unitsPerEm_ = std::round(1 / matrix[3]);
    if (!std::all_of(file_.fontBBox.begin(), file_.fontBBox.end(), isSensible)) file_.fontBBox = {};
}

void Type1Backend::mapCharacters() {
    characters_.clear();
    for (const auto& [name, program] : file_.charStrings)
        if (const auto codepoint = codepointOfGlyphName(name)) characters_.try_emplace(*codepoint, &program);
    for (const Lookalike& lookalike : lookalikes) {
        const auto found = characters_.find(lookalike.stands);
        if (found == characters_.end()) continue;
        const Charstring* program = found->second;
        characters_.try_emplace(lookalike.codepoint, program);
    }
    const auto found = file_.charStrings.find(".notdef");
    notdef_ = found == file_.charStrings.end() ? nullptr : &found->second;
}

double Type1Backend::ascent() const {
    const auto& box = file_.fontBBox;
    return box[3] > box[1] ? box[3] : unitsPerEm_ * usualAscent;
}

double Type1Backend::descent() const {
    const auto& box = file_.fontBBox;
    return box[3] > box[1] ? std::max(-box[1], 0.0) : unitsPerEm_ * usualDescent;
}

const Charstring* Type1Backend::programOf(std::uint32_t codepoint) const {
    const auto found = characters_.find(codepoint);
    return found == characters_.end() ? notdef_ : found->second;
}

GlyphBitmap Type1Backend::rasterize(std::uint32_t codepoint, double scale) {
    GlyphBitmap blank;
    blank.advance = scale * unitsPerEm_;
    const Charstring* program = programOf(codepoint);
    if (!program) return blank;
    builder_.clear();
    const auto& m = file_.fontMatrix;
    const double em = scale * unitsPerEm_;
    const AffineTransform transform{em * m[0], em * m[2], em * m[1], em * m[3], em * m[4], em * m[5]};
    CharstringRunner runner(file_, transform, builder_);
    const bool drawn = runner.draw(*program);
    if (!runner.advance()) return blank;
    blank.advance = transform.xx * *runner.advance();
    return drawn ? rasteriser_.rasterize(builder_, blank.advance) : blank;
}

}  // namespace kelmora
