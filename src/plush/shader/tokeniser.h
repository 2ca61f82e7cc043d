#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelmora::plush_shader::detail {

enum class TokenKind : std::uint8_t {
    Number = 0,
    Name = 1,
    String = 2,
    Symbol = 3,
    StatementEnd = 4,  // a line feed or ";"
    InputEnd = 5,
};

struct Token {
    TokenKind kind = TokenKind::InputEnd;
    std::string text;  // of a string without its quotes
    float number = 0;
    std::uint32_t line = 0;  // from 1
};

// Ends with a StatementEnd and an InputEnd. Raises "shader line N: ..." for text that is no token.
std::vector<Token> tokenise(std::string_view source);

[[noreturn]] void raiseShaderError(std::uint32_t line, std::string_view message);

}  // namespace kelmora::plush_shader::detail
