#include <stdexcept>

#include "script/statements.h"

namespace kelmora {

// Walks the instructions of one program. The statement and expression code is the interpreter's; only the
// nesting of blocks comes from the program's tables.
class BytecodeExecutor {
public:
    BytecodeExecutor(VesperScript& script, const BytecodeProgram& program, BlockSignal& signal)
        : script_(script), program_(program), signal_(signal) {}

    // True when the enclosing block must stop too.
    bool runChunk(std::uint32_t chunk, bool useLocalScope, std::int64_t startInstruction);

private:
    class ChunkEntry;

    const ParsedScriptLine& line(std::uint32_t index) const {
        if (index >= program_.lines.size()) throw std::runtime_error("Bytecode line index out of range");
        return program_.lines[index];
    }
    const ParsedScriptLine& enterLine(std::uint32_t index) {
        script_.countStep();
        const ParsedScriptLine& entered = line(index);
        script_.context_.setLine(entered);
        return entered;
    }
    template <typename Record>
    static const Record& entry(const std::vector<Record>& table, std::uint32_t index, const char* message) {
        if (index >= table.size()) throw std::runtime_error(message);
        return table[index];
    }
    bool aborted() const { return script_.shouldAbortForSoftRaisedError(); }

    bool walkInstructions(std::uint32_t chunk, std::uint32_t start);
    bool handleJump(std::uint32_t chunk, std::uint32_t& at);
    bool jumpCameOutOfBody() const;
    bool ancestorHasLabel(const std::string& label) const;
    bool executeRegisteredJumpTarget(const std::string& label);

    bool execute(const BytecodeInstruction& instruction);
    bool runStatement(std::uint32_t lineIndex);
    bool runIf(const IfGroup& group);
    bool runWhile(const BytecodeLoop& loop);
    bool runRepeat(const BytecodeLoop& loop);
    bool runNumericFor(const BytecodeLoop& loop);
    bool runGenericFor(const BytecodeLoop& loop);
    bool runNest(const NestBlock& block);
    void declareFunction(const FunctionDeclaration& declaration);
    bool runReturn(std::uint32_t lineIndex);

    // Runs a block's body one native level deeper than its opener.
    bool runBody(std::uint32_t chunk);
    // A round of a loop: true to go on with the next one.
    bool runRound(std::uint32_t chunk);
    bool loopEnded() const { return !signal_.isNormal() || script_.labels_.jumpPending(); }

    bool isInline(std::uint32_t chunk, unsigned depth);
    bool examineInline(const BytecodeChunk& chunk, unsigned depth);
    bool bodyIsInline(const BytecodeInstruction& instruction, unsigned depth);
    bool runInlineChunk(std::uint32_t chunk);
    bool executeInline(const BytecodeInstruction& instruction);

    VesperScript& script_;
    const BytecodeProgram& program_;
    BlockSignal& signal_;
};

// The stacks that a running chunk stands on, put back on every way out.
class BytecodeExecutor::ChunkEntry {
public:
    ChunkEntry(VesperScript& script, const BytecodeProgram& program, std::uint32_t chunk, bool wantsScope)
        : script_(script), scope_(script.scopes_, wantsScope) {
        script_.activeChunks_.push_back({&program, chunk});
    }
    ChunkEntry(const ChunkEntry&) = delete;
    ChunkEntry& operator=(const ChunkEntry&) = delete;
    ~ChunkEntry() { script_.activeChunks_.pop_back(); }

private:
    VesperScript& script_;
    LocalScopeGuard scope_;
};

bool BytecodeExecutor::runChunk(std::uint32_t chunk, bool useLocalScope, std::int64_t startInstruction) {
    script_.stack_.check();
    script_.countStep();
    if (chunk >= program_.chunks.size()) throw std::runtime_error("Invalid bytecode chunk index");
    const BytecodeChunk& record = program_.chunks[chunk];
    if (std::uint64_t{record.firstInstruction} + record.instructionCount > program_.instructions.size())
        throw std::runtime_error("Bytecode chunk range is out of bounds");
    if (startInstruction > static_cast<std::int64_t>(record.instructionCount))
        throw std::runtime_error("Bytecode jump target is outside the target chunk");
    const std::uint32_t start = startInstruction < 0 ? 0 : static_cast<std::uint32_t>(startInstruction);
    const bool wantsScope =
        useLocalScope && (record.declaresLocals || script_.scopes_.hasVisibleLocalScope());
    // Jumps look for labels in the chunks that are entered; a program without labels has none to find.
    if (!wantsScope && program_.nestBlocks.empty()) return walkInstructions(chunk, start);
    const ChunkEntry entered(script_, program_, chunk, wantsScope);
    return walkInstructions(chunk, start);
}

bool BytecodeExecutor::walkInstructions(std::uint32_t chunk, std::uint32_t start) {
    const BytecodeChunk& record = program_.chunks[chunk];
    const BytecodeInstruction* instructions = program_.instructions.data() + record.firstInstruction;
    for (std::uint32_t at = start;;) {
        if (script_.labels_.jumpPending() && !handleJump(chunk, at)) return true;
        if (at >= record.instructionCount) return false;
        script_.rethrowPendingCoroutineException();
        if (aborted()) return true;
        if (execute(instructions[at])) {
            if (!jumpCameOutOfBody()) return true;
            signal_.kind = BlockSignal::Kind::Normal;
            continue;
        }
        script_.serviceCoroutines();
        ++at;
    }
}

bool BytecodeExecutor::jumpCameOutOfBody() const {
    return script_.labels_.jumpPending() && !aborted() &&
           (signal_.isNormal() || signal_.kind == BlockSignal::Kind::Jump);
}

// With a jump on its way: moves inside this chunk, or gives false to leave it.
bool BytecodeExecutor::handleJump(std::uint32_t chunk, std::uint32_t& at) {
    const std::string label = script_.labels_.jumpLabel();
    if (Labels::findInChunk(program_, chunk, label, at)) {
        script_.labels_.clearJump();
        return true;
    }
    if (ancestorHasLabel(label)) {
        signal_.kind = BlockSignal::Kind::Jump;
        return false;
    }
    script_.labels_.clearJump();
    if (!executeRegisteredJumpTarget(label)) throw std::runtime_error("jumpTo target not found: " + label);
    return false;
}

bool BytecodeExecutor::ancestorHasLabel(const std::string& label) const {
    std::uint32_t instruction = 0;
    for (auto active = script_.activeChunks_.rbegin(); active != script_.activeChunks_.rend(); ++active)
        if (Labels::findInChunk(*active->program, active->chunk, label, instruction)) return true;
    return false;
}

bool BytecodeExecutor::executeRegisteredJumpTarget(const std::string& label) {
    Labels::Target target;
    if (!script_.labels_.find(label, target)) return false;
    BlockSignal signal;
    {
        const SourceLineGuard line(script_.context_);
        const SourceFileGuard source(script_.context_, target.program->sourceDirectory,
                                     target.program->sourcePath);
        const NativeLevelGuard level(script_.scopes_, target.nativeLevel);
        BytecodeExecutor(script_, *target.program, signal).runChunk(target.chunk, true, target.instruction);
    }
    script_.rethrowPendingCoroutineException();
    if (signal.kind == BlockSignal::Kind::Break) throw std::runtime_error("break used outside a loop");
    return true;
}

bool BytecodeExecutor::execute(const BytecodeInstruction& instruction) {
    const std::uint32_t operand = instruction.operand;
    switch (instruction.opcode) {
        case Opcode::Line:
        case Opcode::SimpleAssignment:
            return runStatement(operand);
        case Opcode::If:
            return runIf(entry(program_.ifGroups, operand, "Bytecode if-group index out of range"));
        case Opcode::While:
            return runWhile(entry(program_.whileLoops, operand, "Bytecode while-loop index out of range"));
        case Opcode::Repeat:
            return runRepeat(entry(program_.repeatLoops, operand, "Bytecode repeat-loop index out of range"));
        case Opcode::NumericFor:
            return runNumericFor(
                entry(program_.numericForLoops, operand, "Bytecode numeric-for index out of range"));
        case Opcode::GenericFor:
            return runGenericFor(
                entry(program_.genericForLoops, operand, "Bytecode generic-for index out of range"));
        case Opcode::DeclareFunction:
            declareFunction(entry(program_.functionDeclarations, operand,
                                  "Bytecode function-declaration index out of range"));
            return false;
        case Opcode::Return:
            return runReturn(operand);
        case Opcode::Break:
            enterLine(operand);
            signal_.kind = BlockSignal::Kind::Break;
            return true;
        case Opcode::Nest:
            return runNest(entry(program_.nestBlocks, operand, "Bytecode nest-block index out of range"));
    }
    throw std::runtime_error("Unknown bytecode opcode: " +
                             std::to_string(static_cast<unsigned>(instruction.opcode)));
}

bool BytecodeExecutor::runStatement(std::uint32_t lineIndex) {
    const ParsedScriptLine& statement = enterLine(lineIndex);
    if (!script_.executeAssignment(statement, nullptr)) script_.executeExpressionStatement(statement);
    return false;
}

bool BytecodeExecutor::runBody(std::uint32_t chunk) {
    const NativeLevelGuard level(script_.scopes_, script_.scopes_.nativeLevel() + 1);
    if (!script_.scopes_.hasVisibleLocalScope() && isInline(chunk, 0)) return runInlineChunk(chunk);
    return runChunk(chunk, true, -1);
}

bool BytecodeExecutor::runRound(std::uint32_t chunk) {
    runBody(chunk);
    return !signal_.endsLoop() && !loopEnded() && !aborted();
}

bool BytecodeExecutor::runIf(const IfGroup& group) {
    for (const IfBranch& branch : group) {
        const bool taken = branch.isElse || script_.evaluateCondition(enterLine(branch.line), "if");
        if (aborted()) return true;
        if (taken) return runBody(branch.bodyChunk);
    }
    return false;
}

bool BytecodeExecutor::runWhile(const BytecodeLoop& loop) {
    while (script_.evaluateCondition(enterLine(loop.line), "while") && !aborted()) {
        if (!runRound(loop.bodyChunk)) break;
    }
    return loopEnded();
}

bool BytecodeExecutor::runRepeat(const BytecodeLoop& loop) {
    const ParsedScriptLine& condition = line(loop.line);
    for (;;) {
        const LocalScopeGuard scope(script_.scopes_, true);  // stays open for the condition
        {
            const NativeLevelGuard level(script_.scopes_, script_.scopes_.nativeLevel() + 1);
            runChunk(loop.bodyChunk, false, -1);
        }
        if (signal_.endsLoop() || loopEnded() || aborted()) return loopEnded();
        script_.context_.setLine(condition);
        if (condition.tokens.size() < 2) script_.context_.throwError("Missing until condition", "until");
        if (script_.evaluateCondition(condition, "until") || aborted()) return loopEnded();
    }
}

bool BytecodeExecutor::runNumericFor(const BytecodeLoop& loop) {
    const ParsedScriptLine& opener = enterLine(loop.line);
    if (!opener.forHeader || !opener.forHeader->isNumeric)
        throw std::runtime_error("Bytecode numeric-for index out of range");
    script_.runNumericFor(opener, [&] { return runRound(loop.bodyChunk); });
    return loopEnded();
}

bool BytecodeExecutor::runGenericFor(const BytecodeLoop& loop) {
    const ParsedScriptLine& opener = enterLine(loop.line);
    if (!opener.forHeader || opener.forHeader->isNumeric)
        throw std::runtime_error("Bytecode generic-for index out of range");
    script_.walkGenericFor(opener, [&] { return runRound(loop.bodyChunk); });
    return loopEnded();
}

bool BytecodeExecutor::runNest(const NestBlock& block) {
    enterLine(block.line);
    return runBody(block.bodyChunk);
}

void BytecodeExecutor::declareFunction(const FunctionDeclaration& declaration) {
    const ParsedScriptLine& opener = enterLine(declaration.line);
    if (!opener.functionHeader) throw std::runtime_error("Bytecode function-declaration index out of range");
    script_.throwHeaderFault(opener, opener.functionHeader->fault);
    const Variable function = script_.makeDeclaredCallable(opener);
    ScriptCallable& callable = function.function();
    callable.program = program_.shared_from_this();
    callable.chunkIndex = declaration.bodyChunk;
    callable.sourceDirectory = declaration.sourceDirectory;
    callable.sourcePath = declaration.sourcePath;
    script_.labels_.registerCallable(callable);
    script_.bindFunction(opener, function);
}

bool BytecodeExecutor::runReturn(std::uint32_t lineIndex) {
    signal_.value = script_.evaluateReturn(enterLine(lineIndex));
    signal_.kind = BlockSignal::Kind::Return;
    return true;
}

// Bodies of older images carry no nested mark. Those that declare nothing and hold only plain statements,
// breaks and such bodies again run without an entry of their own.
bool BytecodeExecutor::isInline(std::uint32_t chunk, unsigned depth) {
    if (chunk >= program_.chunks.size() || depth > 200) return false;
    const BytecodeChunk& record = program_.chunks[chunk];
    if (record.nested || record.declaresLocals) return false;
    std::vector<std::uint8_t>& memo = program_.inlineMemo;
    if (memo.size() < program_.chunks.size()) memo.resize(program_.chunks.size());
    if (memo[chunk] == 0) {
        memo[chunk] = 1;  // a chunk that holds itself is not inline
        if (examineInline(record, depth)) memo[chunk] = 2;
    }
    return memo[chunk] == 2;
}

bool BytecodeExecutor::examineInline(const BytecodeChunk& chunk, unsigned depth) {
    if (std::uint64_t{chunk.firstInstruction} + chunk.instructionCount > program_.instructions.size())
        return false;
    for (std::uint32_t i = 0; i < chunk.instructionCount; ++i)
        if (!bodyIsInline(program_.instructions[chunk.firstInstruction + i], depth)) return false;
    return true;
}

bool BytecodeExecutor::bodyIsInline(const BytecodeInstruction& instruction, unsigned depth) {
    const std::uint32_t operand = instruction.operand;
    const auto loopIsInline = [&](const std::vector<BytecodeLoop>& loops) {
        return operand < loops.size() && isInline(loops[operand].bodyChunk, depth + 1);
    };
    switch (instruction.opcode) {
        case Opcode::Line:
        case Opcode::SimpleAssignment:
        case Opcode::Break:
            return true;
        case Opcode::If:
            if (operand >= program_.ifGroups.size()) return false;
            for (const IfBranch& branch : program_.ifGroups[operand])
                if (!isInline(branch.bodyChunk, depth + 1)) return false;
            return true;
        case Opcode::While:
            return loopIsInline(program_.whileLoops);
        case Opcode::Repeat:
            return loopIsInline(program_.repeatLoops);
        case Opcode::NumericFor:
            return loopIsInline(program_.numericForLoops);
        default:
            return false;
    }
}

bool BytecodeExecutor::runInlineChunk(std::uint32_t chunk) {
    const BytecodeChunk& record = program_.chunks[chunk];
    for (std::uint32_t i = 0; i < record.instructionCount; ++i) {
        script_.rethrowPendingCoroutineException();
        if (aborted()) return true;
        if (executeInline(program_.instructions[record.firstInstruction + i])) return true;
        if (script_.labels_.jumpPending()) return true;  // the enclosing chunk follows it
        script_.serviceCoroutines();
    }
    return false;
}

bool BytecodeExecutor::executeInline(const BytecodeInstruction& instruction) {
    const std::uint32_t operand = instruction.operand;
    switch (instruction.opcode) {
        case Opcode::Line:
        case Opcode::SimpleAssignment:
            return runStatement(operand);
        case Opcode::Break:
            return execute(instruction);
        case Opcode::If:
            return runIf(entry(program_.ifGroups, operand, "Inline bytecode if-group index out of range"));
        case Opcode::While:
            return runWhile(
                entry(program_.whileLoops, operand, "Inline bytecode while-loop index out of range"));
        case Opcode::Repeat:
            return runRepeat(
                entry(program_.repeatLoops, operand, "Inline bytecode repeat-loop index out of range"));
        case Opcode::NumericFor:
            return runNumericFor(
                entry(program_.numericForLoops, operand, "Inline bytecode numeric-for index out of range"));
        default:
            throw std::runtime_error("Unexpected non-inline opcode");
    }
}

bool VesperScript::executeBytecodeChunkInternal(const BytecodeProgram& program, std::uint32_t chunk,
                                                BlockSignal& signal, bool useLocalScope,
                                                std::int64_t startInstruction) {
    return BytecodeExecutor(*this, program, signal).runChunk(chunk, useLocalScope, startInstruction);
}

}  // namespace kelmora
