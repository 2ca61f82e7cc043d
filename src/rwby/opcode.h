#pragma once

#include <cstdint>

namespace vesper::ruby {

// The numbers stand in bytecode files.
enum class OpCode : std::uint8_t {
    PushConstant = 0,
    LoadName = 1,
    StoreName = 2,
    Pop = 3,
    Add = 4,
    Subtract = 5,
    Multiply = 6,
    Divide = 7,
    Modulo = 8,
    Negate = 9,
    Not = 10,
    Equal = 11,
    NotEqual = 12,
    Less = 13,
    LessEqual = 14,
    Greater = 15,
    GreaterEqual = 16,
    And = 17,
    Or = 18,
    Jump = 19,
    JumpIfFalse = 20,
    Call = 21,
    DefineFunction = 22,
    Return = 23,
    MakeArray = 24,
    Index = 25,
    SetIndex = 26,
};

// Pops two values and pushes one.
constexpr bool isBinary(OpCode op) {
    return (op >= OpCode::Add && op <= OpCode::Modulo) || (op >= OpCode::Equal && op <= OpCode::Or);
}

// `a` is a constant, target, count or name, `b` the index of a function, as the instruction wants them. A
// SetIndex on a plain name has the name's constant + 1 in `a`, so that a changed string goes back to it.
struct Instruction {
    OpCode op = OpCode::Pop;
    std::int32_t a = 0;
    std::int32_t b = 0;
    std::uint32_t line = 0;
};

}  // namespace vesper::ruby
