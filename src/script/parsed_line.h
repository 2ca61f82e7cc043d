#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "script/fast_expression.h"
#include "script/token.h"

namespace kelmora {

inline constexpr std::uint32_t noLine = 0xFFFFFFFFu;

enum class ParsedLineKind : std::uint8_t {
    Empty = 0,
    Other = 1,  // assignment or expression
    If = 2,
    ElseIf = 3,
    Else = 4,
    End = 5,
    While = 6,
    Repeat = 7,
    Until = 8,
    For = 9,
    Function = 10,
    DecayFunction = 11,
    NativeFunction = 12,
    LocalFunction = 13,
    Nest = 14,
    Return = 15,
    Break = 16,
};

inline bool isFunctionKind(ParsedLineKind kind) {
    return kind >= ParsedLineKind::Function && kind <= ParsedLineKind::LocalFunction;
}

// Keyword in front of an assignment's targets.
enum class ScopeTarget : std::uint8_t { Default = 0, Native = 1, Local = 2, External = 3 };

struct ParsedAssignmentTarget {
    std::uint32_t tokenIndex = 0;  // of the variable's name
    std::vector<PreparedExpression> keys;
};

struct ParsedAssignment {
    ScopeTarget scopeTarget = ScopeTarget::Default;
    TokenKind operation = TokenKind::Assign;
    std::vector<ParsedAssignmentTarget> targets;
    std::vector<PreparedExpression> values;
    // The only value is a call, so a multi value gives its first element.
    bool valueIsSingleCall = false;
};

struct ParsedFor;
struct ParsedFunctionHeader;

// A statement: its text and tokens, and what preparation found out about it.
struct ParsedScriptLine {
    std::string text;
    std::uint32_t lineNumber = 0;  // from 0
    std::vector<std::string> tokens;
    std::vector<TokenAnalysis> analysis;  // one for each token

    ParsedLineKind kind = ParsedLineKind::Empty;
    bool hasNestLabel = false;
    std::uint32_t endIndex = noLine;         // line that closes this block
    std::uint32_t nextBranchIndex = noLine;  // next elseif or else of an if chain
    // Shared: the direct executor copies the lines of function bodies.
    std::shared_ptr<const ParsedAssignment> assignment;  // null when the line is none
    std::shared_ptr<const ParsedFor> forHeader;
    std::shared_ptr<const ParsedFunctionHeader> functionHeader;
    // Condition of if, elseif, while and until; the whole of an expression statement.
    PreparedExpression expression;
    std::vector<PreparedExpression> returnValues;
    std::string nestLabel;
};

}  // namespace kelmora
