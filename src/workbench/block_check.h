#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "script/parsed_line.h"

namespace kelmora {

struct BlockFault {
    std::uint32_t line = 0;  // index of the statement
    std::string message;
    bool isError = true;
};

// Faults of block structure: openers without their end, closers and branches without an opener, `break`
// outside loops, code behind `return` and `break`. Where an `end` is missing, the indentation tells which
// block was left open; the innermost stands first. `indents` gives the blanks in front of each statement's
// line.
std::vector<BlockFault> checkBlocks(std::span<const ParsedScriptLine> lines,
                                    std::span<const std::uint32_t> indents);

}  // namespace kelmora
