#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelmora {

constexpr std::size_t longestSpeech = 8000;

// The text as one line of at most `longestSpeech` bytes, cut at a whole character: line breaks and other
// control characters become blanks.
std::string speechLine(std::string_view text);
// The language where it may stand in a command line: up to 16 letters, digits and hyphens, the first a
// letter. Else "".
std::string_view speechLanguage(std::string_view language);
std::string base64(std::string_view bytes);

}  // namespace kelmora
