#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelmora {

using Charstring = std::vector<std::uint8_t>;

// What a Type 1 font file says: its clear header and the decrypted programs of its glyphs.
struct Type1File {
    std::array<double, 6> fontMatrix{0.001, 0, 0, 0.001, 0, 0};
    std::array<double, 4> fontBBox{};  // left, bottom, right, top, in glyph units
    std::vector<Charstring> subrs;
    std::map<std::string, Charstring> charStrings;
};

// Reads a file in text (PFA) or segmented binary (PFB) form. Nothing when it holds no glyph.
[[nodiscard]] std::optional<Type1File> readType1File(std::span<const std::uint8_t> bytes);

}  // namespace kelmora
