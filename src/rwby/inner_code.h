#pragma once

#include <cstdint>
#include <vector>

namespace vesper::ruby {

// What runs: the instructions of a function with operands instead of a stack. The binary operators stand in
// the order of the instructions', in each of the three groups.
enum class InnerOp : std::uint8_t {
    Move,
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    And,
    Or,
    // Jumps to `target` when the comparison is false.
    UnlessEqual,
    UnlessNotEqual,
    UnlessLess,
    UnlessLessEqual,
    UnlessGreater,
    UnlessGreaterEqual,
    UnlessAnd,
    UnlessOr,
    // The end of a loop: jumps back to `target` while the comparison is true.
    LoopEqual,
    LoopNotEqual,
    LoopLess,
    LoopLessEqual,
    LoopGreater,
    LoopGreaterEqual,
    LoopAnd,
    LoopOr,
    Negate,
    Not,
    JumpIfFalse,
    JumpIfTrue,
    Jump,
    Loop,            // jumps back
    Call,            // callee in register `a`, `b` arguments behind it
    DefineFunction,  // function `a`
    Return,
    ReturnNil,
    MakeArray,  // `b` items from register `a` on
    Index,
    SetIndex,       // container `a`, index `b`, value `target`
    SetNamedIndex,  // the same; the next instruction's target takes a changed string
};

// An operand is the distance of a value, in bytes, and in its two low bits from where.
enum class OperandSpace : std::int32_t { Register = 0, Constant = 1, Global = 2 };

constexpr std::int32_t operandScale = 16;  // the size of a value
constexpr std::int32_t maximumOperandIndex = INT32_MAX / operandScale - 1;

constexpr std::int32_t makeOperand(OperandSpace space, std::int32_t index) {
    return index * operandScale + static_cast<std::int32_t>(space);
}
constexpr OperandSpace operandSpace(std::int32_t operand) {
    return static_cast<OperandSpace>(operand & 3);
}
constexpr std::int32_t operandIndex(std::int32_t operand) {
    return operand / operandScale;
}

struct InnerInstruction {
    InnerOp op = InnerOp::ReturnNil;
    std::int32_t target = 0;  // operand that takes the result, or where to jump
    std::int32_t a = 0;
    std::int32_t b = 0;
};

// Source lines of an instruction and of the loads that became its operands.
struct InnerLines {
    std::uint32_t op = 0;
    std::uint32_t a = 0;
    std::uint32_t b = 0;
};

// Registers hold the locals and, behind them, what the instructions kept on their stack.
struct InnerCode {
    std::vector<InnerInstruction> instructions;  // none when the function has to run as it stands
    std::vector<InnerLines> lines;
    std::vector<std::int32_t> localGlobals;  // for each local the global that an unassigned one reads
    std::int32_t frameSize = 0;

    bool exists() const { return !instructions.empty(); }
};

}  // namespace vesper::ruby
