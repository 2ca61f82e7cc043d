#include "script/labels.h"

#include "script/program_walk.h"

namespace kelmora {

bool Labels::findInChunk(const BytecodeProgram& program, std::uint32_t chunk, const std::string& label,
                         std::uint32_t& instruction) {
    const std::span<const BytecodeInstruction> instructions = instructionsOf(program, chunk);
    for (std::uint32_t i = 0; i < instructions.size(); ++i) {
        const std::string* candidate = labelOf(program, instructions[i]);
        if (!candidate || *candidate != label) continue;
        instruction = i;
        return true;
    }
    return false;
}

void Labels::registerCallable(ScriptCallable& callable) {
    if (!callable.program || callable.program->nestBlocks.empty()) return;
    const BytecodeProgram& program = *callable.program;
    // Blocks nest as deeply as a file says, and those of a damaged one may hold themselves.
    struct Position {
        std::uint32_t chunk;
        std::size_t instruction;
    };
    std::vector<bool> visited(program.chunks.size());
    std::vector<Position> open{{callable.chunkIndex, 0}};
    std::vector<std::uint32_t> bodies;
    while (!open.empty()) {
        const Position place = open.back();
        open.pop_back();
        if (place.chunk >= visited.size() || (place.instruction == 0 && visited[place.chunk])) continue;
        visited[place.chunk] = true;
        const std::span<const BytecodeInstruction> instructions = instructionsOf(program, place.chunk);
        bodies.clear();
        std::size_t at = place.instruction;
        while (at < instructions.size() && bodies.empty()) {
            const BytecodeInstruction& instruction = instructions[at++];
            if (const std::string* label = labelOf(program, instruction); label && !label->empty())
                records_[*label] = {callable.lifetime(), callable.program, place.chunk,
                                    callable.nativeScopeIndex};
            forEachBody(program, instruction,
                        [&](const BodyReference& body) { bodies.push_back(body.chunk); });
        }
        if (bodies.empty()) continue;
        open.push_back({place.chunk, at});
        for (std::size_t i = bodies.size(); i-- > 0;) open.push_back({bodies[i], 0});
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
