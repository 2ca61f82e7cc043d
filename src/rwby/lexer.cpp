#include "rwby/lexer.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vesper::ruby {
namespace {

constexpr std::array<std::pair<std::string_view, TokenKind>, 14> keywords{{
    {"and", TokenKind::And},
    {"def", TokenKind::Def},
    {"else", TokenKind::Else},
    {"elsif", TokenKind::Elsif},
    {"end", TokenKind::End},
    {"false", TokenKind::False},
    {"if", TokenKind::If},
    {"nil", TokenKind::Nil},
    {"not", TokenKind::Not},
    {"or", TokenKind::Or},
    {"return", TokenKind::Return},
    {"then", TokenKind::Then},
    {"true", TokenKind::True},
    {"while", TokenKind::While},
}};

}  // namespace

void Lexer::skipBlanks() {
    for (;;) {
        const char c = cursor_.peek();
        if (c == '#') {
            while (!cursor_.atEnd() && cursor_.peek() != '\n') cursor_.take();
        } else if (!cursor_.atEnd() &&
                   (c == ' ' || c == '\t' || c == '\r' || (c == '\n' && openBrackets_ > 0))) {
            cursor_.take();
        } else {
            return;
        }
    }
}

Token Lexer::next() {
    skipBlanks();
    Token token;
    token.place = cursor_.location();
    if (cursor_.atEnd()) return token;
    const char c = cursor_.peek();
    if (kelmora::guest::isNameStart(c)) return readName(std::move(token));
    if (kelmora::guest::isDigit(c)) return readNumber(std::move(token));
    if (c == '"' || c == '\'') {
        token.kind = TokenKind::String;
        token.text = cursor_.readString(cursor_.take());
        return token;
    }
    token.kind = readOperator(token.place);
    return token;
}

Token Lexer::readName(Token token) {
    while (kelmora::guest::isNamePart(cursor_.peek())) token.text += cursor_.take();
    if (cursor_.take('?')) token.text += '?';
    const auto keyword = std::find_if(keywords.begin(), keywords.end(),
                                      [&](const auto& entry) { return entry.first == token.text; });
    token.kind = keyword == keywords.end() ? TokenKind::Name : keyword->second;
    return token;
}

Token Lexer::readNumber(Token token) {
    const auto readDigits = [&] {
        while (kelmora::guest::isDigit(cursor_.peek())) token.text += cursor_.take();
    };
    token.kind = TokenKind::Integer;
    readDigits();
    if (cursor_.peek() == '.' && kelmora::guest::isDigit(cursor_.peek(1))) {
        token.kind = TokenKind::Float;
        token.text += cursor_.take();
        readDigits();
    }
    return token;
}

TokenKind Lexer::readOperator(kelmora::guest::Location place) {
    const char c = cursor_.take();
    switch (c) {
        case '\n':
        case ';':
            return TokenKind::Separator;
        case '+':
            return TokenKind::Plus;
        case '-':
            return TokenKind::Minus;
        case '*':
            return TokenKind::Star;
        case '/':
            return TokenKind::Slash;
        case '%':
            return TokenKind::Percent;
        case ',':
            return TokenKind::Comma;
        case '=':
            return cursor_.take('=') ? TokenKind::Equal : TokenKind::Assign;
        case '!':
            return cursor_.take('=') ? TokenKind::NotEqual : TokenKind::Not;
        case '<':
            return cursor_.take('=') ? TokenKind::LessEqual : TokenKind::Less;
        case '>':
            return cursor_.take('=') ? TokenKind::GreaterEqual : TokenKind::Greater;
        case '&':
            if (cursor_.take('&')) return TokenKind::And;
            cursor_.fail(place, "unexpected '&', use '&&'");
        case '|':
            if (cursor_.take('|')) return TokenKind::Or;
            cursor_.fail(place, "unexpected '|', use '||'");
        case '(':
        case '[':
            ++openBrackets_;
            return c == '(' ? TokenKind::OpenParenthesis : TokenKind::OpenBracket;
        case ')':
        case ']':
            if (openBrackets_ > 0) --openBrackets_;
            return c == ')' ? TokenKind::CloseParenthesis : TokenKind::CloseBracket;
        default:
            cursor_.fail(place, std::string("unexpected character '") + c + "'");
    }
}

}  // namespace vesper::ruby
