#include "workbench/token_spacing.h"

#include <algorithm>
#include <array>

namespace kelmora {
namespace {

constexpr std::array<std::string_view, 20> keywords{
    "and", "break", "decay",  "else", "elseif", "end", "external", "for",    "function", "if",
    "in",  "local", "native", "nest", "not",    "or",  "repeat",   "return", "until",    "while"};

bool isOpener(std::string_view text) {
    return text == "(" || text == "[" || text == "{";
}
bool isCloser(std::string_view text) {
    return text == ")" || text == "]" || text == "}";
}
bool isSeparator(std::string_view text) {
    return text == "," || text == ";";
}

// A value ends with it, so that a bracket behind it is a call's or an element's.
bool endsValue(std::string_view source, const SourceToken& token) {
    const std::string_view text = textOf(source, token);
    if (token.kind == SourceTokenKind::Word) return !isKeyword(text);
    return token.kind == SourceTokenKind::String || isCloser(text);
}

}  // namespace

bool isKeyword(std::string_view word) {
    return std::find(keywords.begin(), keywords.end(), word) != keywords.end();
}

bool isPrefixSign(std::string_view source, const SourceToken* previous, const SourceToken& sign) {
    const std::string_view text = textOf(source, sign);
    if (sign.kind != SourceTokenKind::Sign) return false;
    if (text == "#" || text == "!") return true;
    if (text != "-" && text != "+") return false;
    if (!previous) return true;
    const std::string_view before = textOf(source, *previous);
    // Behind `not` a minus subtracts from nothing.
    if (previous->kind == SourceTokenKind::Word) return isKeyword(before) && before != "not";
    return previous->kind == SourceTokenKind::Sign && !isCloser(before);
}

Spacing spacingBetween(std::string_view source, const SourceToken& left, bool isPrefix,
                       const SourceToken& right) {
    const std::string_view a = textOf(source, left);
    const std::string_view b = textOf(source, right);
    if (right.kind == SourceTokenKind::Comment) return Spacing::Keep;
    const bool leftSign = left.kind == SourceTokenKind::Sign;
    const bool rightSign = right.kind == SourceTokenKind::Sign;
    if (rightSign && (isCloser(b) || isSeparator(b) || b == ":")) return Spacing::None;
    if (leftSign && (isOpener(a) || isPrefix)) return Spacing::None;
    if (leftSign && (isSeparator(a) || a == ":")) return Spacing::One;
    if (rightSign && (b == "(" || b == "[") && endsValue(source, left)) return Spacing::None;
    if (rightSign && (b == "#" || b == "!") && endsValue(source, left)) return Spacing::Keep;
    return Spacing::One;
}

bool canTouch(std::string_view source, const SourceToken& left, const SourceToken& right) {
    const std::string_view a = textOf(source, left);
    const std::string_view b = textOf(source, right);
    const bool leftWord = left.kind == SourceTokenKind::Word;
    if (leftWord && (right.kind == SourceTokenKind::Word || b == "#")) return false;
    // A pair of signs, or a sign and the first byte of a word that would make one.
    const std::string both{a.back(), b.front(), ' '};
    return scanSource(both).size() == 2 || (leftWord && right.kind == SourceTokenKind::String) ||
           left.kind == SourceTokenKind::String || right.kind == SourceTokenKind::String;
}

}  // namespace kelmora
