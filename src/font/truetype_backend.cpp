#include "font/truetype_backend.h"

#include <algorithm>

namespace kelmora {
namespace {

constexpr std::size_t fileHeader = 12;
constexpr std::size_t directoryEntry = 16;

constexpr std::uint32_t tag(const char (&name)[5]) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(name[i]);
    return value;
}

}  // namespace

bool TrueTypeBackend::load(const std::vector<std::uint8_t>& bytes) {
    data = bytes;
    file_ = FontBytes(data);
    if (!readDirectory()) return false;
    const bool complete = findTable(tag("cmap"), cmap_) && findTable(tag("glyf"), glyf_) &&
                          findTable(tag("loca"), loca_) && findTable(tag("head"), head_) &&
                          findTable(tag("hhea"), hhea_) && findTable(tag("hmtx"), hmtx_) &&
                          findTable(tag("maxp"), maxp_);
    if (!complete || !readMetrics() || !readGlyphOffsets() || !characters_.load(file_, cmap_)) return false;
    outlines_.bind(file_, glyf_.offset, glyph_offsets);
    return true;
}

bool TrueTypeBackend::readDirectory() {
    tables.clear();
    if (!file_.has(0, fileHeader)) return false;
    const std::uint32_t version = file_.u32(0);
    if (version != 0x00010000 && version != tag("true")) return false;
    const std::size_t count = file_.u16(4);
    if (!file_.has(fileHeader, count * directoryEntry)) return false;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = fileHeader + i * directoryEntry;
        const TableRecord record{file_.u32(at + 8), file_.u32(at + 12)};
        if (!file_.has(record.offset, record.length)) return false;
        tables[file_.u32(at)] = record;
    }
    return true;
}

bool TrueTypeBackend::findTable(std::uint32_t name, TableRecord& out) const {
    const auto found = tables.find(name);
    if (found == tables.end()) return false;
    out = found->second;
    return true;
}

// The tables' own lengths are often wrong in the field, so only the file's end counts.
bool TrueTypeBackend::readMetrics() {
    const std::size_t head = head_.offset;
    const std::size_t hhea = hhea_.offset;
    const std::size_t maxp = maxp_.offset;
    if (!file_.has(head, 54) || !file_.has(hhea, 36) || !file_.has(maxp, 6)) return false;
    units_per_em_ = file_.u16(head + 18);
    long_loca = file_.u16(head + 50);
    ascent_ = file_.i16(hhea + 4);
    descent_ = static_cast<std::int16_t>(-file_.i16(hhea + 6));
    line_gap_ = file_.i16(hhea + 8);
    num_h_metrics = file_.u16(hhea + 34);
    num_glyphs = file_.u16(maxp + 4);
    return units_per_em_ != 0 && num_glyphs != 0 && num_h_metrics != 0;
}

bool TrueTypeBackend::readGlyphOffsets() {
    const std::size_t count = num_glyphs + std::size_t{1};
    const std::size_t entry = long_loca != 0 ? 4 : 2;
    if (!file_.has(loca_.offset, count * entry)) return false;
    glyph_offsets.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = loca_.offset + i * entry;
        glyph_offsets[i] = long_loca != 0 ? file_.u32(at) : file_.u16(at) * 2u;
    }
    return std::all_of(glyph_offsets.begin(), glyph_offsets.end(),
                       [this](std::uint32_t offset) { return offset <= glyf_.length; });
}

// Glyphs behind the last full entry share its advance and have only a side bearing of their own.
bool TrueTypeBackend::hasMetrics(std::uint16_t glyph) const {
    const std::size_t full = std::min<std::size_t>(glyph, num_h_metrics - std::size_t{1});
    if (!file_.has(hmtx_.offset + full * 4, 4)) return false;
    if (glyph < num_h_metrics) return true;
    return file_.has(hmtx_.offset + num_h_metrics * std::size_t{4} + (glyph - std::size_t{num_h_metrics}) * 2,
                     2);
}

GlyphBitmap TrueTypeBackend::rasterize(std::uint32_t codepoint, double scale) {
    std::uint16_t glyph = characters_.glyphOf(codepoint);
    if (glyph >= num_glyphs) glyph = 0;
    GlyphBitmap blank;
    blank.advance = scale * units_per_em_;
    if (!hasMetrics(glyph)) return blank;
    const std::size_t full = std::min<std::size_t>(glyph, num_h_metrics - std::size_t{1});
    blank.advance = scale * file_.u16(hmtx_.offset + full * 4);
    builder_.clear();
    const AffineTransform scaled{scale, 0, 0, scale, 0, 0};
    if (!outlines_.append(glyph, scaled, builder_)) return blank;
    return rasteriser_.rasterize(builder_, blank.advance);
}

}  // namespace kelmora
