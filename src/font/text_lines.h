#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kelmora {

// Code points of UTF-8 text. A byte that starts no whole sequence is U+FFFD, and decoding goes on behind it;
// overlong forms and surrogates stand for what their bits say.
std::vector<std::uint32_t> decodeUtf8(std::string_view text);

// The code point at `at`, which is inside the text and moved behind it.
std::uint32_t nextCodepoint(std::string_view text, std::size_t& at);

// Lines end at line feeds, so there is always one more of them; carriage returns are dropped.
std::vector<std::vector<std::uint32_t>> splitLines(const std::vector<std::uint32_t>& codepoints);

}  // namespace kelmora
