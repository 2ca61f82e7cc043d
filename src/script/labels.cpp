#include "script/labels.h"

namespace kelmora {

bool Labels::findInChunk(const BytecodeProgram& program, std::uint32_t chunk, const std::string& label,
                         std::uint32_t& instruction) {
    const BytecodeChunk& record = program.chunks[chunk];
    for (std::uint32_t i = 0; i < record.instructionCount; ++i) {
        const std::uint64_t at = std::uint64_t{record.firstInstruction} + i;
        if (at >= program.instructions.size()) return false;
        const BytecodeInstruction& candidate = program.instructions[static_cast<std::size_t>(at)];
        if (candidate.opcode != Opcode::Nest || candidate.operand >= program.nestBlocks.size()) continue;
        if (program.nestBlocks[candidate.operand].label != label) continue;
        instruction = i;
        return true;
    }
    return false;
}

void Labels::registerCallable(ScriptCallable& callable) {
    if (!callable.program || callable.program->nestBlocks.empty()) return;
    std::vector<bool> visited(callable.program->chunks.size());
    registerChunk(callable, callable.chunkIndex, visited);
}

void Labels::registerChunk(ScriptCallable& callable, std::uint32_t chunk, std::vector<bool>& visited) {
    const BytecodeProgram& program = *callable.program;
    // A damaged image may claim chunks that hold themselves.
    if (chunk >= program.chunks.size() || visited[chunk]) return;
    visited[chunk] = true;
    const auto enterLoop = [&](const std::vector<BytecodeLoop>& loops, std::uint32_t index) {
        if (index < loops.size()) registerChunk(callable, loops[index].bodyChunk, visited);
    };
    const BytecodeChunk& record = program.chunks[chunk];
    for (std::uint32_t i = 0; i < record.instructionCount; ++i) {
        const std::uint64_t at = std::uint64_t{record.firstInstruction} + i;
        if (at >= program.instructions.size()) return;
        const BytecodeInstruction& instruction = program.instructions[static_cast<std::size_t>(at)];
        const std::uint32_t operand = instruction.operand;
        switch (instruction.opcode) {
            case Opcode::If:
                if (operand < program.ifGroups.size())
                    for (const IfBranch& branch : program.ifGroups[operand])
                        registerChunk(callable, branch.bodyChunk, visited);
                break;
            case Opcode::While:
                enterLoop(program.whileLoops, operand);
                break;
            case Opcode::Repeat:
                enterLoop(program.repeatLoops, operand);
                break;
            case Opcode::NumericFor:
                enterLoop(program.numericForLoops, operand);
                break;
            case Opcode::GenericFor:
                enterLoop(program.genericForLoops, operand);
                break;
            case Opcode::Nest: {
                if (operand >= program.nestBlocks.size()) break;
                const NestBlock& block = program.nestBlocks[operand];
                if (!block.label.empty())
                    records_[block.label] = {callable.lifetime(), callable.program, chunk,
                                             callable.nativeScopeIndex};
                registerChunk(callable, block.bodyChunk, visited);
                break;
            }
            default:
                break;
        }
    }
}

bool Labels::find(const std::string& label, Target& target) const {
    const auto found = records_.find(label);
    if (found == records_.end()) return false;
    const Record& record = found->second;
    target.program = record.program.lock();
    if (!target.program || record.ownerLife.expired()) return false;
    target.chunk = record.chunk;
    target.nativeLevel = record.nativeLevel;
    return findInChunk(*target.program, target.chunk, label, target.instruction);
}

}  // namespace kelmora
