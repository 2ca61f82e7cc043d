#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "guest/location_error.h"

namespace vesper::lua {

enum class TokenKind : std::uint8_t {
    End,
    Name,
    Number,
    String,
    // keywords
    And,
    Break,
    Do,
    Else,
    ElseIf,
    EndKeyword,
    False,
    For,
    Function,
    If,
    In,
    Local,
    Nil,
    Not,
    Or,
    Return,
    Then,
    True,
    While,
    // symbols
    Hash,
    Percent,
    LeftParenthesis,
    RightParenthesis,
    Star,
    Plus,
    Comma,
    Minus,
    Slash,
    Colon,
    Semicolon,
    Less,
    Assign,
    Greater,
    LeftBracket,
    RightBracket,
    LeftBrace,
    RightBrace,
    Dot,
    Concat,
    Ellipsis,
    LessEqual,
    GreaterEqual,
    Equal,
    NotEqual
};

// The text is a name, a number as written, or a string's bytes.
struct Token {
    TokenKind kind = TokenKind::End;
    std::string text;
    std::uint32_t line = 1;
    std::uint32_t column = 1;

    kelmora::guest::Location location() const { return {line, column}; }
};

}  // namespace vesper::lua
