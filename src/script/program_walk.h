#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "script/bytecode_program.h"

// Ways through a program's tables that hold for damaged programs too: what points outside is left out.
namespace kelmora {

// A chunk that an instruction runs, and the line that opens it.
struct BodyReference {
    std::uint32_t line = 0;
    std::uint32_t chunk = 0;
    bool isElse = false;
};

// The chunk's instructions, as far as the program has them.
inline std::span<const BytecodeInstruction> instructionsOf(const BytecodeProgram& program,
                                                           std::uint32_t chunk) {
    if (chunk >= program.chunks.size()) return {};
    const BytecodeChunk& record = program.chunks[chunk];
    const std::size_t first = std::min<std::size_t>(record.firstInstruction, program.instructions.size());
    return std::span(program.instructions)
        .subspan(first, std::min<std::size_t>(record.instructionCount, program.instructions.size() - first));
}

// The table that a loop instruction points into; null for every other instruction.
inline const std::vector<BytecodeLoop>* loopsOf(const BytecodeProgram& program, Opcode opcode) {
    switch (opcode) {
        case Opcode::While:
            return &program.whileLoops;
        case Opcode::Repeat:
            return &program.repeatLoops;
        case Opcode::NumericFor:
            return &program.numericForLoops;
        case Opcode::GenericFor:
            return &program.genericForLoops;
        default:
            return nullptr;
    }
}

// Visits the bodies that the instruction runs as part of its block, in the order of the source. The body of a
// function that it declares is none of them.
template <typename Visit>
void forEachBody(const BytecodeProgram& program, const BytecodeInstruction& instruction, Visit&& visit) {
    const std::uint32_t operand = instruction.operand;
    if (const std::vector<BytecodeLoop>* loops = loopsOf(program, instruction.opcode)) {
        if (operand < loops->size())
            visit(BodyReference{(*loops)[operand].line, (*loops)[operand].bodyChunk});
    } else if (instruction.opcode == Opcode::If && operand < program.ifGroups.size()) {
        for (const IfBranch& branch : program.ifGroups[operand])
            visit(BodyReference{branch.line, branch.bodyChunk, branch.isElse});
    } else if (instruction.opcode == Opcode::Nest && operand < program.nestBlocks.size()) {
        visit(BodyReference{program.nestBlocks[operand].line, program.nestBlocks[operand].bodyChunk});
    }
}

// The label of a `nest` instruction; null for every other instruction, and where there is no such block.
inline const std::string* labelOf(const BytecodeProgram& program, const BytecodeInstruction& instruction) {
    if (instruction.opcode != Opcode::Nest || instruction.operand >= program.nestBlocks.size())
        return nullptr;
    return &program.nestBlocks[instruction.operand].label;
}

}  // namespace kelmora
