#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <vector>

#include "plush/shader/program.h"

namespace kelmora::plush_shader::detail {

// Larger programs are run by the plain machine.
inline constexpr std::size_t flowRegisterLimit = 1024;
inline constexpr std::size_t flowInstructionLimit = 4096;

using RegisterSet = std::bitset<flowRegisterLimit>;

// What is known of the moment before an instruction.
struct FlowPoint {
    bool reachable = false;
    bool isLabel = false;        // a jump comes here
    bool fallsIn = false;        // the instruction before comes here
    bool isConvergent = false;   // all pixels pass here, whichever way they take
    RegisterSet live;            // read later on some way
    RegisterSet liveInDiverged;  // read later by pixels that diverged around this instruction
};

// A point for each instruction and one for the end. None when a pixel's result may depend on the pixel before
// it (random numbers, registers read before they are written), or when the program is too large.
std::optional<std::vector<FlowPoint>> analyseFlow(const Program& program);

}  // namespace kelmora::plush_shader::detail
