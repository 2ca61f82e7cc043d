#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "rwby/opcode.h"

namespace vesper::ruby {

struct CompiledFunction;
struct Program;

class FastEvaluator;
class RubyValue;
struct FastNode;
using FastEvaluation = void (*)(FastEvaluator& evaluator, const FastNode& node, RubyValue& result);

// A node of a function that is one expression. Children are indexes of nodes, -1 for none.
struct FastNode {
    enum class Kind : std::uint8_t { Constant, Local, Global, Unary, Binary, Index, Call, Array };

    Kind kind = Kind::Constant;
    OpCode subKind = OpCode::Pop;  // of Unary and Binary
    std::int32_t value = 0;        // constant index, local slot, or constant of a global's name
    std::int32_t left = -1;
    std::int32_t right = -1;
    std::vector<std::int32_t> arguments;
    std::uint32_t line = 0;
    std::int32_t callTarget = -1;
    std::int32_t globalSlot = -1;
    // What evaluates it, chosen for its operator and its children.
    FastEvaluation evaluate = nullptr;

    // Values that stand still; a global does not, since a call further on may change it.
    bool isLeaf() const { return kind == Kind::Constant || kind == Kind::Local; }
};

enum class FastKind : std::uint8_t { None = 0, Expression = 1, GuardedExpression = 2 };

struct FastForm {
    FastKind kind = FastKind::None;
    std::vector<FastNode> nodes;
    std::int32_t root = -1;
    // Of a guarded expression: `if condition then error("text") end` stands in front.
    std::int32_t condition = -1;
    std::int32_t errorText = -1;  // constant
    std::int32_t errorSlot = -1;  // the global `error`
    std::uint32_t errorNameLine = 0;
    std::uint32_t errorCallLine = 0;
};

// Deeper trees stay instructions: evaluating goes down the native stack.
constexpr std::int32_t maximumFastDepth = 48;

// Builds nodes for the instructions from `first` up to `end`, which must be straight and leave one value: its
// node. Nothing when they do not.
std::optional<std::int32_t> buildFastExpressionRange(const Program& program, const CompiledFunction& function,
                                                     std::size_t first, std::size_t end,
                                                     std::vector<FastNode>& nodes);
// Whether an `error("text")` with its jump over the rest of an if stands at `first`; fills in what is said.
bool extractFastErrorCall(const Program& program, const CompiledFunction& function, std::size_t first,
                          FastForm& form);
// Gives all nodes their evaluation.
void chooseEvaluations(FastForm& form);
// Wants the function's slots to be there.
FastForm buildFastForm(const Program& program, const CompiledFunction& function);

}  // namespace vesper::ruby
