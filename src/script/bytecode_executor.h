#pragma once

#include <cstdint>
#include <string>

#include "script/block_signal.h"
#include "script/bytecode_program.h"
#include "script/interpreter.h"

namespace kelmora {

// Walks the blocks of one program's plan. The statement and expression code is the interpreter's; only the
// nesting of blocks comes from the plan.
class BytecodeExecutor {
public:
    BytecodeExecutor(Interpreter& script, const BytecodeProgram& program, BlockSignal& signal)
        : script_(script), program_(program), signal_(signal) {}

    static const PlanBlock& blockOf(const Interpreter& script, const BytecodeProgram& program,
                                    std::uint32_t chunk) {
        return program.plan.get(program, script.fastExpressions).block(chunk);
    }

    // Runs a block of the program. True when the enclosing block must stop too.
    bool enterBlock(const PlanBlock& block) {
        return block.isPlain ? walkSteps(block, 0) : runBlock(block, true, 0);
    }
    // From a step of the block, counted from 0.
    bool resumeBlock(const PlanBlock& block, std::uint32_t start) { return runBlock(block, true, start); }

private:
    class ActiveBlock;

    bool aborted() const { return script_.shouldAbortForSoftRaisedError(); }
    void enterLine(const PlanStep& step) { script_.context.setLine(*step.line); }

    bool runBlock(const PlanBlock& block, bool useLocalScope, std::uint32_t start);
    bool walkSteps(const PlanBlock& block, std::uint32_t start);
    const PlanStep* handleJump(const PlanBlock& block);
    [[gnu::always_inline]] inline bool jumpCameOutOfBody() const;
    bool ancestorHasLabel(const std::string& label) const;
    bool executeRegisteredJumpTarget(const std::string& label);

    [[gnu::always_inline]] inline void runSimple(const PlanStep& step);
    bool runSimpleBlock(const PlanBlock& block);
    // A step that is not simple. True when the block must stop.
    [[gnu::always_inline]] inline bool execute(const PlanStep& step);
    void assignName(const PlanStep& step);
    [[gnu::noinline]] void assignAnyName(const PlanStep& step, bool isLocal);
    void assignNames(const PlanStep& step);
    void updateName(const PlanStep& step);
    [[gnu::noinline]] void updateAnyName(const PlanStep& step);
    void assignElement(const PlanStep& step);
    [[gnu::noinline]] void assignAnyElement(const PlanStep& step);
    void updateElement(const PlanStep& step);
    [[gnu::noinline]] void updateAnyElement(const PlanStep& step);
    [[gnu::always_inline]] inline Variable evaluateValue(const PlanStep& step);
    // The value where it stands, or in the storage.
    [[gnu::always_inline]] inline const Variable& referToValue(const PlanStep& step, Variable& storage);
    [[gnu::always_inline]] inline bool runReturn(const PlanStep& step);
    [[gnu::always_inline]] inline bool testCondition(const ParsedScriptLine& line,
                                                     const FastExprNode* condition, const char* statement);
    [[gnu::always_inline]] inline bool runIf(const PlanStep& step);
    bool runWhile(const PlanStep& step);
    bool runRepeat(const PlanStep& step);
    bool runNumericFor(const PlanStep& step);
    bool runGenericFor(const PlanStep& step);
    void declareFunction(const PlanStep& step);

    // Runs a block's body one native level deeper than its opener.
    [[gnu::always_inline]] inline bool runBody(const PlanBlock& block);
    // A round of a loop: true to go on with the next one.
    [[gnu::always_inline]] inline bool runRound(const PlanBlock& block);
    bool loopEnded() const { return !signal_.isNormal() || script_.labels.jumpPending(); }

    Interpreter& script_;
    const BytecodeProgram& program_;
    BlockSignal& signal_;
};

}  // namespace kelmora
