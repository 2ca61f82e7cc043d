#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "plush/shader/program.h"

namespace kelmora::plush_shader::detail {

// A program for many pixels at once. Where the plain machine has a register, this has a lane array: one float
// for each pixel of a batch. Where control flow diverges, instructions are predicated by the execution mask,
// a lane array whose lanes are all ones for the active pixels; the others are parked in a mask of their own
// until they reconverge.
inline constexpr std::size_t batchLanes = 256;

using LaneArray = std::uint16_t;
inline constexpr LaneArray noLanes = 0xFFFF;

enum class BatchOp : std::uint8_t {
    // Below opCount: as the plain machine's, from `a`, `b` and `c` to `dst`. Samples take a fetched pixel,
    // whose
    // bytes stand in its lane as they are.
    Fetch = opCount,  // the bytes of the source pixel at (a, b)
    Pack,  // the bytes of a pixel whose channels are `a`, `b`, `c` and `d`; those that are none are 0
    PredicatedMov,    // dst = a where the mask is set
    Deposit,          // some channels of the batch's pixels are those of `a` or `b`, where the mask is set
    DepositAll,       // the same for all pixels
    BranchAll,        // mask = comparison; the others are parked in `dst`, if that is any
    Branch,           // as BranchAll, among the active pixels
    Park,             // the active pixels are parked in `dst`, if that is any, and go no further
    Reconverge,       // the pixels parked in `a` are active again
    ReconvergeAlone,  // the same after a Park, where no others are
    Label,            // a place to skip to; only until lanes are allocated
};

constexpr BatchOp batchOp(Op op) {
    return static_cast<BatchOp>(op);
}

enum class Comparison : std::uint8_t { NotZero, Zero, Eq, Ne, Lt, Le, Gt, Ge };
inline constexpr std::size_t comparisonCount = 8;

struct BatchInstruction {
    BatchOp op;
    Comparison comparison = Comparison::NotZero;  // of a branch, between `a` and `b`
    LaneArray dst = noLanes;
    LaneArray a = noLanes;
    LaneArray b = noLanes;
    LaneArray c = noLanes;
    LaneArray d = noLanes;
    std::uint8_t channels = 0;  // of a deposit, as in `Program::writeMask`
    std::uint32_t skip = 0;     // where to go on when no pixel is active
};

struct BatchProgram {
    struct Preload {
        LaneArray lanes;
        Slot slot;
    };

    std::vector<Preload> preloads;           // registers that are the same for all pixels
    std::vector<BatchInstruction> prologue;  // what depends on those alone: run once
    std::vector<BatchInstruction> body;
    std::array<LaneArray, 6> inputs;  // r, g, b, a, x, y, where they are used
    LaneArray mask = noLanes;
    LaneArray scratch = noLanes;  // for nested branches
    std::size_t laneArrays = 0;
};

constexpr bool isControl(BatchOp op) {
    return op >= BatchOp::BranchAll;
}

// None when batches could change the result, or for a program past the limits of flow analysis.
std::optional<BatchProgram> lowerToBatches(const Program& program);

}  // namespace kelmora::plush_shader::detail
