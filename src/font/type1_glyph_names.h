#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kelmora {

// The code point that a glyph name stands for: a name of the published list, "uni" and four or "u" and four
// to six hexadecimal digits.
std::optional<std::uint32_t> codepointOfGlyphName(std::string_view name);

// The name behind a code of the standard encoding, empty where it has none.
std::string_view standardEncodingName(std::uint8_t code);

}  // namespace kelmora
