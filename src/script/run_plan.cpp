#include "script/run_plan.h"

#include <algorithm>

#include "script/bytecode_program.h"
#include "script/parsed_header.h"
#include "script/program_walk.h"

namespace kelmora {

class RunPlanBuilder {
public:
    RunPlanBuilder(RunPlan& plan, const BytecodeProgram& program, bool fastExpressions)
        : plan_(plan), program_(program), fastExpressions_(fastExpressions) {}

    void build() {
        plan_.noBlock_.fault = "Invalid bytecode chunk index";
        plan_.blocks_.resize(program_.chunks.size());
        flattenGroups();
        plan_.steps_.reserve(program_.instructions.size());
        for (const BytecodeInstruction& instruction : program_.instructions)
            plan_.steps_.push_back(makeStep(instruction));
        for (std::uint32_t chunk = 0; chunk < program_.chunks.size(); ++chunk) fillBlock(chunk);
        for (PlanBlock& block : plan_.blocks_) block.isGuarded = isGuarded(block);
    }

private:
    static constexpr const char* badLine = "Bytecode line index out of range";

    bool isInRange(const BytecodeChunk& chunk) const {
        return std::uint64_t{chunk.firstInstruction} + chunk.instructionCount <= program_.instructions.size();
    }
    const ParsedScriptLine* lineAt(std::uint32_t index) const {
        return index < program_.lines.size() ? &program_.lines[index] : nullptr;
    }

    void fillBlock(std::uint32_t index) {
        const BytecodeChunk& chunk = program_.chunks[index];
        PlanBlock& block = plan_.blocks_[index];
        block.chunk = index;
        block.declaresLocals = chunk.declaresLocals;
        block.mayHoldLabels = !program_.nestBlocks.empty();
        if (isInRange(chunk)) {
            block.steps = plan_.steps_.data() + chunk.firstInstruction;
            block.stepCount = chunk.instructionCount;
            block.isPlain = !block.declaresLocals && !block.mayHoldLabels && !writesVisibleLocals(block);
            if (block.isPlain && block.stepCount == 1) {
                block.isReturn = isReturn(block.steps[0]);
                block.isSimple = block.steps[0].isSimple();
            }
        } else {
            block.fault = "Bytecode chunk range is out of bounds";
        }
    }

    static bool isReturn(const PlanStep& step) {
        return step.kind == StepKind::ReturnValue || step.kind == StepKind::Return;
    }

    static bool isGuard(const PlanStep& step) {
        if (step.kind != StepKind::If || step.branches.size() != 1) return false;
        const PlanBranch& branch = step.branches.front();
        return branch.line && branch.condition && !branch.condition->mayCall && branch.body->isReturn &&
               branch.body->steps[0].kind == StepKind::ReturnValue;
    }
    static bool isGuarded(const PlanBlock& block) {
        if (!block.isPlain || block.stepCount == 0) return false;
        const PlanStep* last = block.steps + block.stepCount - 1;
        return last->kind == StepKind::ReturnValue && std::all_of(block.steps, last, isGuard);
    }

    // True when a statement names a variable of the local scopes, which it may make there.
    static bool writesVisibleLocals(const PlanBlock& block) {
        const auto namesLocal = [](const TokenAnalysis& token) {
            return token.isScoped() && token.scope == 3;
        };
        return std::any_of(block.steps, block.steps + block.stepCount, [&](const PlanStep& step) {
            return step.line &&
                   std::any_of(step.line->analysis.begin(), step.line->analysis.end(), namesLocal);
        });
    }

    void flattenGroups() {
        for (const IfGroup& group : program_.ifGroups) {
            firstBranches_.push_back(plan_.branches_.size());
            for (const IfBranch& branch : group) plan_.branches_.push_back(makeBranch(branch));
        }
    }
    PlanBranch makeBranch(const IfBranch& record) const {
        PlanBranch branch;
        branch.line = lineAt(record.line);
        branch.isElse = record.isElse;
        branch.body = &plan_.block(record.bodyChunk);
        if (branch.line && !record.isElse) branch.condition = compiled(branch.line->expression);
        return branch;
    }

    static PlanStep faultyStep(const char* message) {
        PlanStep step;
        step.fault = message;
        return step;
    }

    PlanStep makeStep(const BytecodeInstruction& instruction) {
        const std::uint32_t operand = instruction.operand;
        switch (instruction.opcode) {
            case Opcode::Line:
            case Opcode::SimpleAssignment:
                return statementStep(operand);
            case Opcode::If:
                return ifStep(operand);
            case Opcode::While:
                return loopStep(StepKind::While, instruction, "Bytecode while-loop index out of range");
            case Opcode::Repeat:
                return loopStep(StepKind::Repeat, instruction, "Bytecode repeat-loop index out of range");
            case Opcode::NumericFor:
                return forStep(StepKind::NumericFor, instruction, "Bytecode numeric-for index out of range");
            case Opcode::GenericFor:
                return forStep(StepKind::GenericFor, instruction, "Bytecode generic-for index out of range");
            case Opcode::DeclareFunction:
                return declarationStep(operand);
            case Opcode::Return:
                return returnStep(operand);
            case Opcode::Break:
                return lineStep(StepKind::Break, operand);
            case Opcode::Nest:
                return nestStep(operand);
        }
        return faultyStep("Unknown bytecode opcode");
    }

    PlanStep lineStep(StepKind kind, std::uint32_t lineIndex) const {
        const ParsedScriptLine* line = lineAt(lineIndex);
        if (!line) return faultyStep(badLine);
        PlanStep step;
        step.kind = kind;
        step.line = line;
        return step;
    }

    const FastExprNode* compiled(const PreparedExpression& expression) const {
        return fastExpressions_ && expression.fast.valid() ? &expression.fast.root() : nullptr;
    }

    PlanStep statementStep(std::uint32_t lineIndex) const {
        PlanStep step = lineStep(StepKind::Statement, lineIndex);
        if (!step.line) return step;
        if (step.line->assignment) {
            shapeAssignment(step, *step.line->assignment);
            shapeDealing(step, *step.line->assignment);
        } else if ((step.value = compiled(step.line->expression))) {
            step.kind = StepKind::Evaluate;
        }
        return step;
    }

    // One target that is a plain name, with at most one key, and one compiled value.
    void shapeAssignment(PlanStep& step, const ParsedAssignment& assignment) const {
        if (assignment.targets.size() != 1 || assignment.values.size() != 1) return;
        const ParsedAssignmentTarget& target = assignment.targets[0];
        const TokenAnalysis& name = step.line->analysis[target.tokenIndex];
        const bool isUpdate = assignment.operation != TokenKind::Assign;
        if (name.isScoped() || target.keys.size() > 1) return;
        const FastExprNode* value = compiled(assignment.values[0]);
        const FastExprNode* key = target.keys.empty() ? nullptr : compiled(target.keys[0]);
        if (!value || (!target.keys.empty() && !key)) return;
        if (assignment.scopeTarget == ScopeTarget::Local && !isUpdate && !key) {
            step.kind = StepKind::AssignLocal;
        } else if (assignment.scopeTarget == ScopeTarget::Default) {
            step.kind = isUpdate ? (key ? StepKind::UpdateElement : StepKind::UpdateName)
                                 : (key ? StepKind::AssignElement : StepKind::AssignName);
        } else {
            return;
        }
        if (isUpdate) step.operation = compoundOperation(assignment.operation);
        step.name = name.name;
        step.value = value;
        step.key = key;
        step.isCall = assignment.valueIsSingleCall;
    }

    // Several targets that are plain names, and one compiled value.
    void shapeDealing(PlanStep& step, const ParsedAssignment& assignment) const {
        if (assignment.targets.size() < 2 || assignment.values.size() != 1) return;
        if (assignment.operation != TokenKind::Assign) return;
        if (assignment.scopeTarget != ScopeTarget::Local && assignment.scopeTarget != ScopeTarget::Default)
            return;
        for (const ParsedAssignmentTarget& target : assignment.targets)
            if (!target.keys.empty() || step.line->analysis[target.tokenIndex].isScoped()) return;
        step.value = compiled(assignment.values[0]);
        if (step.value) step.kind = StepKind::AssignNames;
    }

    PlanStep returnStep(std::uint32_t lineIndex) const {
        PlanStep step = lineStep(StepKind::Return, lineIndex);
        if (step.line && step.line->returnValues.size() == 1 &&
            (step.value = compiled(step.line->returnValues[0])))
            step.kind = StepKind::ReturnValue;
        return step;
    }

    PlanStep ifStep(std::uint32_t operand) const {
        if (operand >= program_.ifGroups.size()) return faultyStep("Bytecode if-group index out of range");
        PlanStep step;
        step.kind = StepKind::If;
        step.branches =
            std::span(plan_.branches_).subspan(firstBranches_[operand], program_.ifGroups[operand].size());
        return step;
    }

    PlanStep loopStep(StepKind kind, const BytecodeInstruction& instruction, const char* message) const {
        const std::vector<BytecodeLoop>& loops = *loopsOf(program_, instruction.opcode);
        if (instruction.operand >= loops.size()) return faultyStep(message);
        PlanStep step = lineStep(kind, loops[instruction.operand].line);
        step.body = &plan_.block(loops[instruction.operand].bodyChunk);
        if (step.line) step.value = compiled(step.line->expression);
        return step;
    }
    PlanStep forStep(StepKind kind, const BytecodeInstruction& instruction, const char* message) const {
        const PlanStep step = loopStep(kind, instruction, message);
        if (!step.line) return step;
        const bool fits =
            step.line->forHeader && step.line->forHeader->isNumeric == (kind == StepKind::NumericFor);
        return fits ? step : faultyStep(message);
    }

    PlanStep declarationStep(std::uint32_t operand) const {
        constexpr const char* message = "Bytecode function-declaration index out of range";
        if (operand >= program_.functionDeclarations.size()) return faultyStep(message);
        const FunctionDeclaration& declaration = program_.functionDeclarations[operand];
        PlanStep step = lineStep(StepKind::DeclareFunction, declaration.line);
        if (step.line && !step.line->functionHeader) return faultyStep(message);
        step.declaration = &declaration;
        return step;
    }

    PlanStep nestStep(std::uint32_t operand) const {
        if (operand >= program_.nestBlocks.size())
            return faultyStep("Bytecode nest-block index out of range");
        PlanStep step;
        step.kind = StepKind::Nest;
        step.line = lineAt(program_.nestBlocks[operand].line);  // nothing of it is needed to run the body
        step.body = &plan_.block(program_.nestBlocks[operand].bodyChunk);
        return step;
    }

    RunPlan& plan_;
    const BytecodeProgram& program_;
    bool fastExpressions_;
    std::vector<std::size_t> firstBranches_;  // of each if group
};

RunPlan::RunPlan(const BytecodeProgram& program, bool fastExpressions) {
    RunPlanBuilder(*this, program, fastExpressions).build();
}

}  // namespace kelmora
