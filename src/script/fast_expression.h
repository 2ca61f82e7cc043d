#pragma once

#include <cstdint>
#include <vector>

#include "script/token.h"

namespace kelmora {

struct Interpreter;

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

// One operation of a compiled expression, with the code that runs it. The code is chosen for the node's
// operands when the expression is compiled.
struct FastExprNode {
    // The value. Nil when a soft error ends the evaluation half-way.
    using Evaluate = Variable (*)(Interpreter&, const FastExprNode&);
    // Whether the value is true.
    using Test = bool (*)(Interpreter&, const FastExprNode&);
    // The value where it stands, or put into the storage. It holds until script runs or a variable changes.
    using Refer = const Variable& (*)(Interpreter&, const FastExprNode&, Variable& storage);
    // The value if it is an integer. False when `evaluate` has to tell; nothing has happened then.
    using Integer = bool (*)(Interpreter&, const FastExprNode&, std::int32_t& result);

    Evaluate evaluate = nullptr;
    Test test = nullptr;
    Refer refer = nullptr;
    Integer integer = nullptr;  // only of nodes that run no script and may well be integers

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

// An expression compiled to a tree of nodes, its root the last. Whatever cannot be compiled is left without
// nodes, and the token walk evaluates it.
struct FastExpression {
    std::vector<FastExprNode> nodes;
    bool makesContainers = false;  // holds a constructor or `...`

    bool valid() const { return !nodes.empty(); }
    const FastExprNode& root() const { return nodes.back(); }
    Variable evaluate(Interpreter& script) const { return root().evaluate(script, root()); }
    bool test(Interpreter& script) const { return root().test(script, root()); }
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

// Chooses the code that runs the node. Its operands have theirs already.
void chooseNodeCode(FastExprNode& node);

}  // namespace kelmora
