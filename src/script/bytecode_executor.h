#pragma once

#include <cstdint>
#include <string>

#include "script/block_signal.h"
#include "script/bytecode_program.h"
#include "script/vesper_script.h"

namespace kelmora {

// Walks the blocks of one program's plan. The statement and expression code is the interpreter's; only the
// nesting of blocks comes from the plan.
class BytecodeExecutor {
public:
    BytecodeExecutor(VesperScript& script, const BytecodeProgram& program, BlockSignal& signal)
        : script_(script),
          program_(program),
          plan_(program.plan.get(program, script.fastExpressions_)),
          signal_(signal) {}

    // True when the enclosing block must stop too. The start is a step of the block, from 0.
    bool runChunk(std::uint32_t chunk, bool useLocalScope, std::uint32_t start = 0) {
        return runBlock(plan_.block(chunk), useLocalScope, start);
    }

private:
    class ActiveBlock;

    bool aborted() const { return script_.shouldAbortForSoftRaisedError(); }
    void enterLine(const PlanStep& step) { script_.context_.setLine(*step.line); }

    bool runBlock(const PlanBlock& block, bool useLocalScope, std::uint32_t start);
    bool walkSteps(const PlanBlock& block, std::uint32_t start);
    bool handleJump(const PlanBlock& block, std::uint32_t& at);
    bool jumpCameOutOfBody() const;
    bool ancestorHasLabel(const std::string& label) const;
    bool executeRegisteredJumpTarget(const std::string& label);

    bool execute(const PlanStep& step);
    void assignName(const PlanStep& step, bool isLocal);
    void updateName(const PlanStep& step);
    void assignElement(const PlanStep& step);
    void updateElement(const PlanStep& step);
    Variable evaluateValue(const PlanStep& step);
    bool runReturn(const PlanStep& step);
    bool testCondition(const ParsedScriptLine& line, const FastExprNode* condition, const char* statement);
    bool runIf(const PlanStep& step);
    bool runWhile(const PlanStep& step);
    bool runRepeat(const PlanStep& step);
    bool runNumericFor(const PlanStep& step);
    bool runGenericFor(const PlanStep& step);
    void declareFunction(const PlanStep& step);

    // Runs a block's body one native level deeper than its opener.
    bool runBody(const PlanBlock& block);
    // A round of a loop: true to go on with the next one.
    bool runRound(const PlanBlock& block);
    bool loopEnded() const { return !signal_.isNormal() || script_.labels_.jumpPending(); }

    VesperScript& script_;
    const BytecodeProgram& program_;
    const RunPlan& plan_;
    BlockSignal& signal_;
};

}  // namespace kelmora
