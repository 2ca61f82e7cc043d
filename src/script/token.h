#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "script/names.h"
#include "script/variable.h"

namespace kelmora {

// What a token is, worked out once when its line is read.
enum class TokenKind : std::uint8_t {
    Unknown,
    Identifier,
    Scoped,  // name#n
    String,  // quoted, still undecoded in the token's text
    Int,
    Float,
    Pointer,  // $1F
    True,
    False,
    Ellipsis,
    // Words and signs that operate; the words are identifiers too where an operand stands.
    Not,
    Or,
    And,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessEqual,
    GreaterEqual,
    Plus,
    Minus,
    Multiply,
    Divide,
    IntegerDivide,
    Remainder,
    Power,
    Tetration,
    Pentation,
    Length,
    Exclamation,
    // Assignment.
    Assign,
    AddAssign,
    SubtractAssign,
    MultiplyAssign,
    DivideAssign,
    IntegerDivideAssign,
    RemainderAssign,
    PowerAssign,
    // Punctuation.
    Comma,
    Colon,
    Semicolon,
    OpenParenthesis,
    CloseParenthesis,
    OpenBracket,
    CloseBracket,
    OpenBrace,
    CloseBrace,
    // Words that end an expression.
    End,
    Else,
    ElseIf,
    Until,
};

// The reading of one token.
struct TokenAnalysis {
    TokenKind kind = TokenKind::Unknown;
    std::uint8_t scope = 0;  // of a Scoped token
    // Set for every token that passes as an identifier, keywords and the true and false forms included;
    // for a Scoped token it is the part in front of the `#`.
    NameId name = noName;
    Variable literal;  // of a String (decoded), Int, Float, Pointer, True or False token

    bool isIdentifier() const { return name != noName; }
    bool isScoped() const { return kind == TokenKind::Scoped; }
    bool isPlainIdentifier() const { return isIdentifier() && !isScoped(); }
};

TokenAnalysis analyseToken(const std::string& token);

// The scopes that `name#n` can ask for: 0 external, 1 global, 2 native, 3 local.
bool parseScopedVariableToken(std::string_view token, std::string_view& name, int& scope);
bool parsePointerLiteral(std::string_view token, std::uintptr_t& value);
bool isTrueToken(std::string_view token);
bool isFalseToken(std::string_view token);
bool tokenLooksNumeric(std::string_view token);
// Takes the quotes off a quoted token and resolves its escapes; any other token comes back as it is.
std::string decodeStringToken(std::string_view token);

// Binding strength of a binary operator, 1 to 7; 0 for every other kind.
int binaryPrecedence(TokenKind kind);
bool isRightAssociative(TokenKind kind);
// True for the tokens in front of which the word `not` is the nil value and no operator.
bool isStandaloneNotBoundary(TokenKind kind);

inline bool isAssignmentOperator(TokenKind kind) {
    return kind >= TokenKind::Assign && kind <= TokenKind::PowerAssign;
}
// The binary operator inside a compound assignment.
TokenKind compoundOperation(TokenKind assignment);

}  // namespace kelmora
