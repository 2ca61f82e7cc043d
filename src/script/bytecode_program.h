#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "script/code_cache.h"
#include "script/program_lines.h"
#include "script/source_file.h"

namespace kelmora {

inline constexpr std::uint16_t bytecodeVersion = 60;

enum class Opcode : std::uint8_t {
    Line = 0,
    SimpleAssignment = 1,
    If = 2,
    While = 3,
    Repeat = 4,
    NumericFor = 5,
    GenericFor = 6,
    DeclareFunction = 7,
    Return = 8,
    Break = 9,
    Nest = 10,
};

struct BytecodeInstruction {
    Opcode opcode = Opcode::Line;
    std::uint32_t operand = 0;  // index into the table that the opcode works on
    std::uint32_t second = 0;
};

struct BytecodeChunk {
    std::uint32_t firstInstruction = 0;
    std::uint32_t instructionCount = 0;
    bool declaresLocals = false;
    bool nested = false;  // all but the root
};

struct IfBranch {
    std::uint32_t line = 0;
    std::uint32_t bodyChunk = 0;
    bool isElse = false;
};
using IfGroup = std::vector<IfBranch>;

struct BytecodeLoop {
    std::uint32_t line = 0;  // the line with the condition: of a repeat the `until`, else the opener
    std::uint32_t bodyChunk = 0;
};

struct NestBlock {
    std::uint32_t line = 0;
    std::uint32_t bodyChunk = 0;
    std::uint32_t parentChunk = 0;
    std::string label;
};

struct FunctionDeclaration {
    std::uint32_t line = 0;
    std::uint32_t bodyChunk = 0;
    std::uint32_t firstBodyLine = 0;
    std::uint32_t endLine = 0;
    SourceFile source;
};

// A compiled source: its lines, and tables that say how they nest. Chunk 0 is the whole source.
struct BytecodeProgram : std::enable_shared_from_this<BytecodeProgram> {
    std::uint16_t version = bytecodeVersion;
    SourceFile source;
    ProgramLines lines;
    std::vector<BytecodeInstruction> instructions;
    std::vector<BytecodeChunk> chunks;
    std::vector<IfGroup> ifGroups;
    std::vector<BytecodeLoop> whileLoops;
    std::vector<BytecodeLoop> repeatLoops;
    std::vector<BytecodeLoop> numericForLoops;
    std::vector<BytecodeLoop> genericForLoops;
    std::vector<NestBlock> nestBlocks;
    std::vector<FunctionDeclaration> functionDeclarations;

    // Not part of the image.
    mutable CodeCache code;
};

}  // namespace kelmora
