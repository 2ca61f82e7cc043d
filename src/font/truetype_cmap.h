#pragma once

#include <unordered_map>
#include <vector>

#include "font/font_bytes.h"

namespace kelmora {

struct TableRecord {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
};

struct Format12Group {
    std::uint32_t startCharCode;
    std::uint32_t endCharCode;
    std::uint32_t startGlyph;
};

// Code points to glyphs: one segment table (format 4) and one list of groups (format 12) of a font.
class CharacterMap {
public:
    // The file's bytes must outlive the map. False when neither table is there.
    [[nodiscard]] bool load(FontBytes file, TableRecord cmap);
    // 0 for what the font lacks. Answers are remembered.
    std::uint16_t glyphOf(std::uint32_t codepoint);

private:
    struct Segments {
        std::size_t offset;  // of the subtable, from the start of the file
        std::size_t count;
        std::size_t endCode;  // arrays, from the start of the subtable
        std::size_t startCode;
        std::size_t idDelta;
        std::size_t idRangeOffset;
    };

    void loadSubtable(std::size_t at, std::uint16_t encoding);
    void loadSegments(std::size_t at, std::uint16_t encoding);
    void loadGroups(std::size_t at, std::uint16_t encoding);
    std::uint16_t glyphFromSegments(std::uint32_t codepoint) const;
    std::uint32_t glyphFromGroups(std::uint32_t codepoint) const;

    FontBytes file_;
    bool has_format4 = false;
    Segments segments_{};
    std::vector<Format12Group> format12_groups;
    std::unordered_map<std::uint32_t, std::uint16_t> glyph_ids;
};

}  // namespace kelmora
