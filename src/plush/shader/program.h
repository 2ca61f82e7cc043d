#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelmora::plush_shader {

// What an instruction does. Values are 32-bit floats; truth is any value but 0.
enum class Op : std::uint8_t {
    Mov = 0,
    Add = 1,
    Sub = 2,
    Mul = 3,
    Div = 4,
    Mod = 5,
    Pow = 6,
    Neg = 7,
    Not = 8,
    Eq = 9,
    Ne = 10,
    Lt = 11,
    Le = 12,
    Gt = 13,
    Ge = 14,
    And = 15,
    Or = 16,
    Jump = 17,  // to the instruction `b`
    Jz = 18,    // to the instruction `b` when `a` is 0
    Abs = 19,
    Floor = 20,
    Ceil = 21,
    Round = 22,
    Sqrt = 23,
    Sin = 24,
    Cos = 25,
    Tan = 26,
    Atan = 27,
    Exp = 28,
    Log = 29,
    Fract = 30,
    Sign = 31,
    Atan2 = 32,
    Min = 33,
    Max = 34,
    Step = 35,
    Clamp = 36,
    Mix = 37,
    Smoothstep = 38,
    Random = 39,
    SampleR = 40,
    SampleG = 41,
    SampleB = 42,
    SampleA = 43,
    Halt = 44,
};

inline constexpr std::size_t opCount = 45;

// Registers that an instruction reads: its fields `a`, `b` and `c` in this order.
int operandCount(Op op);

using Slot = std::uint16_t;

// The first slots of every register file.
namespace slots {
inline constexpr Slot r = 0;
inline constexpr Slot g = 1;
inline constexpr Slot b = 2;
inline constexpr Slot a = 3;
inline constexpr Slot x = 4;
inline constexpr Slot y = 5;
inline constexpr Slot width = 6;
inline constexpr Slot height = 7;
inline constexpr Slot greyR = 8;
inline constexpr Slot greyG = 9;
inline constexpr Slot greyB = 10;
inline constexpr Slot firstFree = 11;
}  // namespace slots

struct Instruction {
    std::uint16_t op = 0;  // only the low byte counts
    std::uint16_t dst = 0;
    std::uint16_t a = 0;
    std::uint16_t b = 0;
    std::uint16_t c = 0;

    Op operation() const { return static_cast<Op>(op & 0xFF); }
};

struct ConstantSlot {
    Slot slot;
    float value;
};

struct UniformSlot {
    std::string name;
    Slot slot;
};

namespace detail {
struct BatchProgram;
}

// A compiled shader. Every register of its instructions is below `registerCount`, and jumps go forward.
struct Program {
    std::string source;
    std::vector<Instruction> instructions;
    std::vector<ConstantSlot> constants;
    std::vector<UniformSlot> uniforms;  // in the order of their first use
    std::uint32_t registerCount = 0;
    bool usesPixel = false;      // the result can vary from pixel to pixel
    std::uint8_t writeMask = 0;  // channels that the program can write: bit 0 red, 1 green, 2 blue, 3 alpha

    // What runs in its place on many pixels, once it has been asked for; null when nothing may. Only the
    // thread that runs programs sets it.
    mutable std::optional<std::shared_ptr<const detail::BatchProgram>> batches;
};

std::vector<std::string> uniformNames(const Program& program);

}  // namespace kelmora::plush_shader
