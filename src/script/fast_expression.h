#pragma once

#include <cstdint>
#include <vector>

#include "script/code_cache.h"
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
    Array,     // a constructor without keys, in either kind of brackets
    Table,     // a constructor with at least one key, or empty braces
    KeyEntry,  // of a Table: key and value
    Varargs,
};

// One operation of an expression.
struct FastExprNode {
    FastExprNodeKind kind = FastExprNodeKind::Constant;
    TokenKind operation = TokenKind::Unknown;  // of a Binary
    std::uint8_t scope = 0;                    // of a ScopedVariable
    // Evaluating the node may run script: values read before it have to be kept, not referred to.
    bool mayCall = false;
    NameId name = noName;     // of a variable
    std::uint32_t count = 0;  // arguments of a Call, entries of a constructor
    // Places of other nodes, relative to this one. Operands stand in front of what they belong to.
    std::int32_t left = 0;   // first operand, container, callee, or key of an entry
    std::int32_t right = 0;  // second operand, key of an Index, value of an entry, or the first in a list
    std::int32_t next = 0;   // behind this one in a list of arguments or entries
    Variable constant;

    const FastExprNode& leftNode() const { return this[left]; }
    const FastExprNode& rightNode() const { return this[right]; }
    const FastExprNode& nextNode() const { return this[next]; }
    bool isComparison() const {
        return kind == FastExprNodeKind::Binary && operation >= TokenKind::Equal &&
               operation <= TokenKind::GreaterEqual;
    }
};

// An expression as a tree of nodes, its root the last. Whatever has no nodes, the token walk evaluates.
struct FastExpression {
    std::vector<FastExprNode> nodes;
    bool makesContainers = false;  // holds a constructor or `...`
    mutable CodeCache code;        // of the expression alone

    bool valid() const { return !nodes.empty(); }
    const FastExprNode& root() const { return nodes.back(); }
};

// Tokens of one expression, first and past the end, and what they compile to.
struct PreparedExpression {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    FastExpression fast;
};

struct ParsedScriptLine;

// The expression in these tokens of the line; without nodes for tokens that fit nowhere, deep nesting, and
// when tokens are left over.
FastExpression compileFastExpressionRange(const ParsedScriptLine& line, std::uint32_t first,
                                          std::uint32_t last);

}  // namespace kelmora
