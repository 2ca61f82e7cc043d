#pragma once

#include <cstdint>
#include <vector>

namespace vesper::ruby {

struct Program;

// What runs: the instructions of a function with operands instead of a stack. The binary operators stand in
// the order of the instructions', in each of the three groups.
#define VESPER_RWBY_INNER_OPS(X)                                                  \
    X(Move)                                                                       \
    X(Add)                                                                        \
    X(Subtract)                                                                   \
    X(Multiply)                                                                   \
    X(Divide)                                                                     \
    X(Modulo)                                                                     \
    X(Equal)                                                                      \
    X(NotEqual)                                                                   \
    X(Less)                                                                       \
    X(LessEqual)                                                                  \
    X(Greater)                                                                    \
    X(GreaterEqual)                                                               \
    X(And)                                                                        \
    X(Or)                                                                         \
    X(UnlessEqual) /* jumps when the comparison is false */                       \
    X(UnlessNotEqual)                                                             \
    X(UnlessLess)                                                                 \
    X(UnlessLessEqual)                                                            \
    X(UnlessGreater)                                                              \
    X(UnlessGreaterEqual)                                                         \
    X(UnlessAnd)                                                                  \
    X(UnlessOr)                                                                   \
    X(LoopEqual) /* the end of a loop: jumps back while the comparison is true */ \
    X(LoopNotEqual)                                                               \
    X(LoopLess)                                                                   \
    X(LoopLessEqual)                                                              \
    X(LoopGreater)                                                                \
    X(LoopGreaterEqual)                                                           \
    X(LoopAnd)                                                                    \
    X(LoopOr)                                                                     \
    X(Negate)                                                                     \
    X(Not)                                                                        \
    X(JumpIfFalse)                                                                \
    X(JumpIfTrue)                                                                 \
    X(Jump)                                                                       \
    X(Loop)           /* jumps back */                                            \
    X(Call)           /* callee in register `a`, `b` arguments behind it */       \
    X(DefineFunction) /* function `a` */                                          \
    X(Return)                                                                     \
    X(ReturnNil)                                                                  \
    X(MakeArray) /* `b` items from register `a` on */                             \
    X(Index)                                                                      \
    X(SetIndex)      /* container `a`, index `b`, value `target` */               \
    X(SetNamedIndex) /* the same; the next instruction's target takes a changed string */

enum class InnerOp : std::uint8_t {
#define VESPER_RWBY_INNER_OP(name) name,
    VESPER_RWBY_INNER_OPS(VESPER_RWBY_INNER_OP)
#undef VESPER_RWBY_INNER_OP
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
    std::int32_t target = 0;  // operand that takes the result, or how far to jump from behind this one
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
    const Program* program = nullptr;

    bool exists() const { return !instructions.empty(); }
};

}  // namespace vesper::ruby
