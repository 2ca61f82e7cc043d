#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/regex/byte_set.h"
#include "base/regex/syntax_tree.h"

namespace kelmora::regex {

enum class Op : std::uint8_t {
    byte,            // a: the byte
    literal,         // a: offset in literals, b: length
    set,             // a: set
    jump,            // b: target
    split,           // a: first target, b: second target, c and d: their filters
    splitLazy,       // the same, but b is tried before a
    saveBegin,       // a: group
    saveEnd,         // a: group
    loopPossessive,  // a: loop
    loopGreedy,      // a: loop
    loopLazy,        // a: loop
    loopCapture,     // a: loop; greedy, each round captured
    guardedLoop,     // a: body, b: exit, c: guard; for bodies that can match nothing
    guardedLoopLazy,
    lineBegin,
    lineEnd,
    wordBoundary,
    notWordBoundary,
    look,          // a: where to go on, b and c: range of the groups inside
    negativeLook,  // likewise
    lookAccept,
    backReference,  // a: group
    accept
};

struct Instruction {
    Op op = Op::accept;
    std::uint32_t a = 0;
    std::uint32_t b = 0;
    std::uint32_t c = 0;
    std::uint32_t d = 0;
};

// A test whether going on at a place is worth trying: a set and, in the lowest bit, whether the end of the
// subject will do.
using Filter = std::uint32_t;
inline constexpr Filter noFilter = 0xFFFF'FFFF;

// A repeat of one byte of a set.
struct Loop {
    enum class Run : std::uint8_t { table, everything, allButOne, allButTwo };

    std::uint32_t set = 0;
    std::uint32_t minimum = 0;
    std::uint32_t maximum = 0;
    Filter next = noFilter;  // of what comes after the loop
    std::uint32_t group = 0;
    Run run = Run::table;
    std::array<unsigned char, 2> stops{};  // what ends a run of allButOne and allButTwo
};

struct SearchPlan {
    enum class Kind : std::uint8_t { everywhere, onlyFirst, prefix, filter };

    Kind kind = Kind::everywhere;
    bool wholeIsPrefix = false;  // the pattern is its prefix and no more
    std::string prefix;
    Filter filter = noFilter;
    std::uint32_t minimumLength = 0;
    // A pattern that begins with this loop and failed at one place fails at all others in the same run.
    bool skipsRuns = false;
    std::uint32_t leadingLoop = 0;
};

struct Program {
    std::vector<Instruction> code;
    std::vector<Loop> loops;
    std::string literals;
    // Eight sets to a table: set i is bit i % 8 of table i / 8.
    std::vector<std::array<std::uint8_t, 256>> tables;
    SearchPlan plan;
    std::uint32_t groupCount = 0;
    std::uint32_t guardCount = 0;
    bool ignoreCase = false;

    bool inSet(std::uint32_t set, unsigned char byte) const {
        return (tables[set >> 3][byte] & (1u << (set & 7))) != 0;
    }
};

Program compileTree(const SyntaxTree& tree, bool ignoreCase);

}  // namespace kelmora::regex
