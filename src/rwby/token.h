#pragma once

#include <cstdint>
#include <string>

#include "guest/location_error.h"

namespace vesper::ruby {

enum class TokenKind : std::uint8_t {
    EndOfSource,
    Separator,  // a line feed or a semicolon
    Name,
    Integer,
    Float,
    String,
    // keywords
    And,
    Def,
    Else,
    Elsif,
    End,
    False,
    If,
    Nil,
    Not,
    Or,
    Return,
    Then,
    True,
    While,
    // operators; `&&`, `||` and `!` read as And, Or and Not
    Plus,
    Minus,
    Star,
    Slash,
    Percent,
    Assign,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    OpenParenthesis,
    CloseParenthesis,
    OpenBracket,
    CloseBracket,
    Comma,
};

struct Token {
    TokenKind kind = TokenKind::EndOfSource;
    std::string text;  // of a name or a number; a string's bytes
    kelmora::guest::Location place;
};

}  // namespace vesper::ruby
