#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kelmora {

struct GlyphName {
    std::string_view name;
    std::uint16_t codepoint;
};

// The published glyph list's names of single characters, and names that fonts use beside them. Ascending by
// name.
std::span<const GlyphName> glyphList();

}  // namespace kelmora
