#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "plush/shader/batch_program.h"

namespace kelmora::plush_shader::detail {

// Lane instructions on their way from a program to a batch program, before their values have arrays.
using ValueId = std::uint32_t;
inline constexpr ValueId noValue = 0xFFFFFFFFu;

enum class ValueKind : std::uint8_t {
    Computed,       // made once, by an instruction or as input
    Home,           // a register's own place, written more than once
    Preloaded,      // a register that is the same for all pixels
    Reconvergence,  // the mask of pixels parked for a label; clear when none are
};

struct Value {
    ValueKind kind = ValueKind::Computed;
    bool invariant = false;  // the same for all pixels
    Slot slot = 0;           // of a home or a preloaded one
};

struct LaneInstruction {
    BatchOp op;
    ValueId dst = noValue;
    ValueId a = noValue;
    ValueId b = noValue;
    ValueId c = noValue;
    ValueId d = noValue;
    Comparison comparison = Comparison::NotZero;  // of a branch
    std::uint8_t channels = 0;                    // of a deposit
    std::uint32_t label = 0;  // of a Label its number, of a control instruction the one to skip to
};

inline std::array<ValueId, 4> operandsOf(const LaneInstruction& instruction) {
    return {instruction.a, instruction.b, instruction.c, instruction.d};
}

struct LaneCode {
    std::vector<Value> values;
    std::vector<LaneInstruction> prologue;
    std::vector<LaneInstruction> body;
    std::array<ValueId, 6> inputs;
};

// Drops what nothing reads, and gives values arrays, which they leave to others after their last use. None
// when that takes too many.
std::optional<BatchProgram> allocateLanes(LaneCode code);

}  // namespace kelmora::plush_shader::detail
