#include "script/token.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>

#include "script/numbers.h"
#include "script/string_constants.h"

namespace kelmora {
namespace {

struct FixedToken {
    std::string_view text;
    TokenKind kind;
};

constexpr FixedToken fixedWords[] = {
    {"not", TokenKind::Not},     {"or", TokenKind::Or},     {"and", TokenKind::And},
    {"end", TokenKind::End},     {"else", TokenKind::Else}, {"elseif", TokenKind::ElseIf},
    {"until", TokenKind::Until},
};
constexpr FixedToken fixedSigns[] = {
    {"...", TokenKind::Ellipsis},
    {"||", TokenKind::Or},
    {"&&", TokenKind::And},
    {"==", TokenKind::Equal},
    {"!=", TokenKind::NotEqual},
    {"~=", TokenKind::NotEqual},
    {"<", TokenKind::Less},
    {">", TokenKind::Greater},
    {"<=", TokenKind::LessEqual},
    {">=", TokenKind::GreaterEqual},
    {"+", TokenKind::Plus},
    {"-", TokenKind::Minus},
    {"*", TokenKind::Multiply},
    {"/", TokenKind::Divide},
    {"\\", TokenKind::IntegerDivide},
    {"%", TokenKind::Remainder},
    {"^", TokenKind::Power},
    {"<-", TokenKind::Tetration},
    {"->", TokenKind::Pentation},
    {"#", TokenKind::Length},
    {"!", TokenKind::Exclamation},
    {"=", TokenKind::Assign},
    {"+=", TokenKind::AddAssign},
    {"-=", TokenKind::SubtractAssign},
    {"*=", TokenKind::MultiplyAssign},
    {"/=", TokenKind::DivideAssign},
    {"\\=", TokenKind::IntegerDivideAssign},
    {"%=", TokenKind::RemainderAssign},
    {"^=", TokenKind::PowerAssign},
    {",", TokenKind::Comma},
    {":", TokenKind::Colon},
    {";", TokenKind::Semicolon},
    {"(", TokenKind::OpenParenthesis},
    {")", TokenKind::CloseParenthesis},
    {"[", TokenKind::OpenBracket},
    {"]", TokenKind::CloseBracket},
    {"{", TokenKind::OpenBrace},
    {"}", TokenKind::CloseBrace},
};

// The signs of one character, which are most tokens.
constexpr auto signKinds = [] {
    std::array<TokenKind, 256> kinds{};
    for (const FixedToken& sign : fixedSigns)
        if (sign.text.size() == 1) kinds[static_cast<unsigned char>(sign.text[0])] = sign.kind;
    return kinds;
}();

TokenKind kindAmong(std::span<const FixedToken> tokens, std::string_view token) {
    for (const FixedToken& each : tokens)
        if (each.text == token) return each.kind;
    return TokenKind::Unknown;
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool startsIdentifier(char c) {
    return isLetter(c) || c == '_' || c == '$';
}
bool continuesIdentifier(char c) {
    return startsIdentifier(c) || isDigit(c);
}

bool looksLikeIdentifier(std::string_view token) {
    return !token.empty() && startsIdentifier(token.front()) &&
           std::all_of(token.begin(), token.end(), continuesIdentifier);
}

bool isQuoted(std::string_view token) {
    return token.size() >= 2 && (token.front() == '"' || token.front() == '\'') &&
           token.back() == token.front();
}

void analyseNumber(const std::string& token, TokenAnalysis& analysis) {
    std::int32_t whole = 0;
    if (token.find('.') == std::string::npos && parseIntStrict(token, whole)) {
        analysis.kind = TokenKind::Int;
        analysis.literal = Variable::integer(whole);
        return;
    }
    // An integer too large for 32 bits becomes a float; one too large even for that stays unknown.
    float value = 0;
    if (!parseFloatStrict(token, value)) return;
    analysis.kind = TokenKind::Float;
    analysis.literal = Variable::number(value);
}

}  // namespace

bool parsePointerLiteral(std::string_view token, std::uintptr_t& value) {
    if (token.size() < 2 || token.front() != '$') return false;
    const char* end = token.data() + token.size();
    const auto result = std::from_chars(token.data() + 1, end, value, 16);
    return result.ec == std::errc() && result.ptr == end;
}

bool isTrueToken(std::string_view token) {
    return token == "true" || token == "ture" || token == "tre" || token == "tue";
}

bool isFalseToken(std::string_view token) {
    return token == "false" || token == "flase" || token == "fasle" || token == "flse";
}

bool parseScopedVariableToken(std::string_view token, std::string_view& name, int& scope) {
    const std::size_t mark = token.find('#');
    if (mark == std::string_view::npos || mark == 0 || mark + 1 >= token.size()) return false;
    if (!looksLikeIdentifier(token.substr(0, mark))) return false;
    std::int32_t number = 0;
    if (!parseIntStrict(token.substr(mark + 1), number) || number < 0 || number >= 4) return false;
    name = token.substr(0, mark);
    scope = number;
    return true;
}

bool tokenLooksNumeric(std::string_view token) {
    std::size_t points = 0;
    std::size_t digits = 0;
    if (!token.empty() && (token.front() == '+' || token.front() == '-')) token.remove_prefix(1);
    for (const char c : token) {
        if (c == '.') {
            ++points;
        } else if (isDigit(c)) {
            ++digits;
        } else {
            return false;
        }
    }
    return digits > 0 && points <= 1;
}

std::string decodeStringToken(std::string_view token) {
    if (!isQuoted(token)) return std::string(token);
    std::string text;
    text.reserve(token.size() - 2);
    const std::string_view inner = token.substr(1, token.size() - 2);
    for (std::size_t i = 0; i < inner.size(); ++i) {
        char c = inner[i];
        if (c == '\\' && i + 1 < inner.size()) {
            c = inner[++i];
            if (c == 'n') c = '\n';
            if (c == 'r') c = '\r';
            if (c == 't') c = '\t';
        }
        text += c;
    }
    return text;
}

TokenAnalysis analyseToken(const std::string& token) {
    TokenAnalysis analysis;
    if (token.size() == 1) analysis.kind = signKinds[static_cast<unsigned char>(token[0])];
    if (analysis.kind != TokenKind::Unknown) return analysis;
    if (std::uintptr_t address = 0; parsePointerLiteral(token, address)) {
        analysis.kind = TokenKind::Pointer;
        analysis.literal = Variable::pointer(reinterpret_cast<void*>(address));
        return analysis;
    }
    if (looksLikeIdentifier(token)) {
        analysis.kind = kindAmong(fixedWords, token);
        analysis.name = internName(token);
        if (analysis.kind != TokenKind::Unknown) return analysis;
        analysis.kind = TokenKind::Identifier;
        if (isTrueToken(token) || isFalseToken(token)) {
            analysis.kind = isTrueToken(token) ? TokenKind::True : TokenKind::False;
            analysis.literal = Variable::boolean(isTrueToken(token));
        }
        return analysis;
    }
    std::string_view scopedName;
    int scope = 0;
    if (parseScopedVariableToken(token, scopedName, scope)) {
        analysis.kind = TokenKind::Scoped;
        analysis.name = internName(scopedName);
        analysis.scope = static_cast<std::uint8_t>(scope);
    } else if (isQuoted(token)) {
        analysis.kind = TokenKind::String;
        analysis.literal = stringConstant(decodeStringToken(token));
    } else if (analysis.kind = kindAmong(fixedSigns, token);
               analysis.kind == TokenKind::Unknown && tokenLooksNumeric(token)) {
        analyseNumber(token, analysis);
    }
    return analysis;
}

int binaryPrecedence(TokenKind kind) {
    switch (kind) {
        case TokenKind::Or:
            return 1;
        case TokenKind::And:
            return 2;
        case TokenKind::Equal:
        case TokenKind::NotEqual:
            return 3;
        case TokenKind::Less:
        case TokenKind::Greater:
        case TokenKind::LessEqual:
        case TokenKind::GreaterEqual:
            return 4;
        case TokenKind::Plus:
        case TokenKind::Minus:
            return 5;
        case TokenKind::Multiply:
        case TokenKind::Divide:
        case TokenKind::IntegerDivide:
        case TokenKind::Remainder:
            return 6;
        case TokenKind::Power:
        case TokenKind::Tetration:
        case TokenKind::Pentation:
            return 7;
        default:
            return 0;
    }
}

bool isRightAssociative(TokenKind kind) {
    return binaryPrecedence(kind) == 7;
}

bool isStandaloneNotBoundary(TokenKind kind) {
    switch (kind) {
        case TokenKind::CloseParenthesis:
        case TokenKind::CloseBracket:
        case TokenKind::CloseBrace:
        case TokenKind::Comma:
        case TokenKind::End:
        case TokenKind::Else:
        case TokenKind::ElseIf:
        case TokenKind::Until:
            return true;
        default:
            return binaryPrecedence(kind) != 0;
    }
}

TokenKind compoundOperation(TokenKind assignment) {
    switch (assignment) {
        case TokenKind::AddAssign:
            return TokenKind::Plus;
        case TokenKind::SubtractAssign:
            return TokenKind::Minus;
        case TokenKind::MultiplyAssign:
            return TokenKind::Multiply;
        case TokenKind::DivideAssign:
            return TokenKind::Divide;
        case TokenKind::IntegerDivideAssign:
            return TokenKind::IntegerDivide;
        case TokenKind::RemainderAssign:
            return TokenKind::Remainder;
        default:
            return TokenKind::Power;
    }
}

}  // namespace kelmora
