#include "lua/lexer.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vesper::lua {
namespace {

using kelmora::guest::isDigit;
using kelmora::guest::isNamePart;
using kelmora::guest::isNameStart;

constexpr std::array<std::pair<std::string_view, TokenKind>, 19> keywords{{
    {"and", TokenKind::And},       {"break", TokenKind::Break},   {"do", TokenKind::Do},
    {"else", TokenKind::Else},     {"elseif", TokenKind::ElseIf}, {"end", TokenKind::EndKeyword},
    {"false", TokenKind::False},   {"for", TokenKind::For},       {"function", TokenKind::Function},
    {"if", TokenKind::If},         {"in", TokenKind::In},         {"local", TokenKind::Local},
    {"nil", TokenKind::Nil},       {"not", TokenKind::Not},       {"or", TokenKind::Or},
    {"return", TokenKind::Return}, {"then", TokenKind::Then},     {"true", TokenKind::True},
    {"while", TokenKind::While},
}};

TokenKind nameKind(std::string_view name) {
    const auto* found = std::find_if(keywords.begin(), keywords.end(),
                                     [name](const auto& keyword) { return keyword.first == name; });
    return found == keywords.end() ? TokenKind::Name : found->second;
}

bool isHexadecimalDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

}  // namespace

Token Lexer::next() {
    skipBlanks();
    Token token;
    token.line = cursor_.location().line;
    token.column = cursor_.location().column;
    if (cursor_.atEnd()) return token;
    const char first = cursor_.peek();
    if (isNameStart(first)) {
        while (isNamePart(cursor_.peek())) token.text += cursor_.take();
        token.kind = nameKind(token.text);
    } else if (isDigit(first)) {
        token.kind = TokenKind::Number;
        token.text = readNumber();
    } else if (first == '"' || first == '\'') {
        cursor_.take();
        token.kind = TokenKind::String;
        token.text = cursor_.readString(first);
    } else if (first == '[' && cursor_.peek(1) == '[') {
        token.kind = TokenKind::String;
        token.text = readLongString();
    } else {
        token.kind = readSymbol();
    }
    return token;
}

void Lexer::skipBlanks() {
    while (!cursor_.atEnd()) {
        if (isBlank(cursor_.peek())) {
            cursor_.take();
        } else if (cursor_.peek() == '-' && cursor_.peek(1) == '-') {
            skipComment();
        } else {
            return;
        }
    }
}

void Lexer::skipComment() {
    cursor_.take();
    cursor_.take();
    if (cursor_.peek() == '[' && cursor_.peek(1) == '[') {
        readLongString();
        return;
    }
    while (!cursor_.atEnd() && cursor_.peek() != '\n') cursor_.take();
}

std::string Lexer::readLongString() {
    const auto start = cursor_.location();
    cursor_.take();
    cursor_.take();
    std::string text;
    while (!cursor_.atEnd()) {
        if (cursor_.peek() == ']' && cursor_.peek(1) == ']') {
            cursor_.take();
            cursor_.take();
            return text;
        }
        text += cursor_.take();
    }
    cursor_.fail(start, "unterminated long string literal");
}

std::string Lexer::readNumber() {
    std::string text;
    const char marker = cursor_.peek(1);
    if (cursor_.peek() == '0' && (marker == 'x' || marker == 'X') && isHexadecimalDigit(cursor_.peek(2))) {
        text = {cursor_.take(), cursor_.take()};
        while (isHexadecimalDigit(cursor_.peek())) text += cursor_.take();
        return text;
    }
    while (isDigit(cursor_.peek())) text += cursor_.take();
    if (cursor_.peek() == '.' && isDigit(cursor_.peek(1))) {
        text += cursor_.take();
        while (isDigit(cursor_.peek())) text += cursor_.take();
    }
    return text;
}

TokenKind Lexer::readSymbol() {
    const auto place = cursor_.location();
    const char c = cursor_.take();
    switch (c) {
        case '#':
            return TokenKind::Hash;
        case '%':
            return TokenKind::Percent;
        case '(':
            return TokenKind::LeftParenthesis;
        case ')':
            return TokenKind::RightParenthesis;
        case '*':
            return TokenKind::Star;
        case '+':
            return TokenKind::Plus;
        case ',':
            return TokenKind::Comma;
        case '-':
            return TokenKind::Minus;
        case '/':
            return TokenKind::Slash;
        case ':':
            return TokenKind::Colon;
        case ';':
            return TokenKind::Semicolon;
        case '[':
            return TokenKind::LeftBracket;
        case ']':
            return TokenKind::RightBracket;
        case '{':
            return TokenKind::LeftBrace;
        case '}':
            return TokenKind::RightBrace;
        case '<':
            return cursor_.take('=') ? TokenKind::LessEqual : TokenKind::Less;
        case '>':
            return cursor_.take('=') ? TokenKind::GreaterEqual : TokenKind::Greater;
        case '=':
            return cursor_.take('=') ? TokenKind::Equal : TokenKind::Assign;
        case '~':
            if (cursor_.take('=')) return TokenKind::NotEqual;
            cursor_.fail(place, "unexpected '~'");
        case '.':
            if (!cursor_.take('.')) return TokenKind::Dot;
            return cursor_.take('.') ? TokenKind::Ellipsis : TokenKind::Concat;
        default:
            cursor_.fail(place, std::string("unexpected character '") + c + "'");
    }
}

}  // namespace vesper::lua
