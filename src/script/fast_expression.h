#pragma once

#include <cstdint>
#include <vector>

#include "script/token.h"

namespace kelmora {

enum class FastExprNodeKind : std::uint8_t {
    Constant,  // of any scalar or string kind
    Variable,
    ScopedVariable,
    Index,
    Call,
    Negate,
    Identity,
    Not,
    Length,
    Binary,
    And,
    Or,
};

struct FastExprNode {
    FastExprNodeKind kind = FastExprNodeKind::Constant;
    TokenKind operation = TokenKind::Unknown;  // of a Binary
    std::uint8_t scope = 0;                    // of a ScopedVariable
    // Evaluating the node may run script: values read before it have to be kept, not referred to.
    bool mayCall = false;
    std::int32_t left = -1;   // first operand, container or callee
    std::int32_t right = -1;  // second operand or key; of a Call the start of its run of arguments
    std::uint32_t value = 0;  // Constant: its index; Variable: the name; Call: the number of arguments
};

// An expression compiled to a tree of nodes. Whatever cannot be compiled is left invalid, and the token
// walk evaluates it.
struct FastExpression {
    std::int32_t root = -1;
    std::vector<FastExprNode> nodes;
    std::vector<Variable> constants;
    std::vector<std::int32_t> callArguments;

    bool valid() const { return root >= 0; }
};

// Tokens of one expression, first and past the end, and what they compile to.
struct PreparedExpression {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    FastExpression fast;
};

struct ParsedScriptLine;

// The expression in these tokens of the line; invalid for constructors, `...`, tokens that fit nowhere, deep
// nesting, and when tokens are left over.
FastExpression compileFastExpressionRange(const ParsedScriptLine& line, std::uint32_t first,
                                          std::uint32_t last);

}  // namespace kelmora
