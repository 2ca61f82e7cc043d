#include "font/truetype_cmap.h"

namespace kelmora {
namespace {

constexpr std::uint16_t unicodePlatform = 0;
constexpr std::uint16_t windowsPlatform = 3;
constexpr std::size_t recordSize = 8;
constexpr std::size_t groupSize = 12;
constexpr std::size_t groupsHeader = 16;

}  // namespace

bool CharacterMap::load(FontBytes file, TableRecord cmap) {
    file_ = file;
    has_format4 = false;
    format12_groups.clear();
    glyph_ids.clear();
    const std::size_t records = std::size_t{cmap.offset} + 4;
    if (!file_.has(cmap.offset, 4)) return false;
    const std::size_t count = file_.u16(cmap.offset + std::size_t{2});
    if (!file_.has(records, count * recordSize)) return false;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t record = records + i * recordSize;
        const std::uint16_t platform = file_.u16(record);
        const std::uint32_t offset = file_.u32(record + 4);
        if (platform != unicodePlatform && platform != windowsPlatform) continue;
        if (offset < cmap.length) loadSubtable(std::size_t{cmap.offset} + offset, file_.u16(record + 2));
    }
    return has_format4 || !format12_groups.empty();
}

void CharacterMap::loadSubtable(std::size_t at, std::uint16_t encoding) {
    const auto format = file_.tryU16(at);
    if (format == 12) loadGroups(at, encoding);
    if (format == 4) loadSegments(at, encoding);
}

void CharacterMap::loadGroups(std::size_t at, std::uint16_t encoding) {
    const std::size_t remaining = file_.remaining(at);
    if (remaining < groupsHeader) return;
    const std::uint32_t length = file_.u32(at + 4);
    const std::uint32_t count = file_.u32(at + 12);
    if (length < groupsHeader || length > remaining) return;
    if (count > (remaining - groupsHeader) / groupSize) return;
    // The full repertoire is preferred over other tables, the last one of its kind over earlier ones.
    if (!format12_groups.empty() && encoding != 10 && encoding != 4) return;
    format12_groups.clear();
    format12_groups.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t group = at + groupsHeader + i * groupSize;
        format12_groups.push_back({file_.u32(group), file_.u32(group + 4), file_.u32(group + 8)});
    }
}

void CharacterMap::loadSegments(std::size_t at, std::uint16_t encoding) {
    const std::size_t remaining = file_.remaining(at);
    if (remaining < 8) return;
    const std::size_t length = file_.u16(at + 2);
    const std::size_t arraySize = file_.u16(at + 6);
    if (length < 16 || length > remaining) return;
    if (arraySize == 0 || arraySize % 2 != 0) return;
    // Two bytes of padding stand between the first two arrays.
    Segments segments{at, arraySize / 2, 14, 16 + arraySize, 16 + 2 * arraySize, 16 + 3 * arraySize};
    if (segments.idRangeOffset + arraySize > length) return;
    if (has_format4 && encoding != 1) return;
    segments_ = segments;
    has_format4 = true;
}

std::uint16_t CharacterMap::glyphFromSegments(std::uint32_t codepoint) const {
    const auto entry = [&](std::size_t array, std::size_t index) {
        return file_.u16(segments_.offset + array + index * 2);
    };
    std::size_t i = 0;
    while (i < segments_.count && entry(segments_.endCode, i) < codepoint) ++i;
    if (i == segments_.count) return 0;
    const std::uint32_t start = entry(segments_.startCode, i);
    if (codepoint < start) return 0;
    std::uint32_t glyph = codepoint;
    if (const std::uint16_t rangeOffset = entry(segments_.idRangeOffset, i); rangeOffset != 0) {
        const std::size_t slot = segments_.offset + segments_.idRangeOffset + i * 2;
        glyph = file_.tryU16(slot + rangeOffset + std::size_t{2} * (codepoint - start)).value_or(0);
        if (glyph == 0) return 0;
    }
    return static_cast<std::uint16_t>(glyph + entry(segments_.idDelta, i));
}

std::uint32_t CharacterMap::glyphFromGroups(std::uint32_t codepoint) const {
    std::size_t low = 0;
    std::size_t high = format12_groups.size();
    while (low < high) {
        const std::size_t at = low + (high - low) / 2;
        const Format12Group& group = format12_groups[at];
        if (codepoint < group.startCharCode) {
            high = at;
        } else if (codepoint > group.endCharCode) {
            low = at + 1;
        } else {
            return codepoint + (group.startGlyph - group.startCharCode);
        }
    }
    return 0;
}

std::uint16_t CharacterMap::glyphOf(std::uint32_t codepoint) {
    const auto known = glyph_ids.find(codepoint);
    if (known != glyph_ids.end()) return known->second;
    std::uint16_t glyph = 0;
    if (codepoint < 0x10000 && has_format4) glyph = glyphFromSegments(codepoint);
    if (glyph == 0) glyph = static_cast<std::uint16_t>(glyphFromGroups(codepoint));
    glyph_ids.emplace(codepoint, glyph);
    return glyph;
}

}  // namespace kelmora
