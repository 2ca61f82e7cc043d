#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelmora {

enum class SourceTokenKind : std::uint8_t { Word, String, Sign, Comment };

// A token and where it stands: offsets in the source, the line from 0, the column in bytes from 0. A string
// may go on over several lines.
struct SourceToken {
    SourceTokenKind kind = SourceTokenKind::Word;
    bool startsStatement = false;  // comments start none
    bool isClosed = true;          // of a string: its second quote was found
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    std::uint32_t openBrackets = 0;  // of its statement, in front of it
};

// The tokens of a VesperScript source as the interpreter tells them, with their places, comments and the `;`
// between statements. Never fails: what has no end goes to the end of the source.
std::vector<SourceToken> scanSource(std::string_view source);

inline std::string_view textOf(std::string_view source, const SourceToken& token) {
    return source.substr(token.begin, token.end - token.begin);
}

}  // namespace kelmora
