#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "script/parsed_line.h"

namespace kelmora {

struct BytecodeProgram;
struct FunctionDeclaration;
struct PlanBlock;
struct PlanBranch;

// What a step does. The first group is of statements in frequent forms whose expressions are all compiled.
enum class StepKind : std::uint8_t {
    AssignName,     // name = value
    AssignLocal,    // local name = value
    AssignNames,    // name, name and so on = value, all of them local or none
    UpdateName,     // name += value and so on
    AssignElement,  // name[key] = value
    UpdateElement,  // name[key] += value and so on
    Evaluate,       // an expression for its effects; the last that cannot end its block
    ReturnValue,    // return value
    If,
    While,
    Repeat,
    NumericFor,
    GenericFor,
    DeclareFunction,
    Nest,
    Break,
    Return,
    Statement,  // any other assignment or expression
    Fault,      // an instruction that points outside the program's tables
};

struct PlanStep {
    StepKind kind = StepKind::Fault;
    TokenKind operation = TokenKind::Unknown;  // of an update, without the "="
    bool isCall = false;                       // the value is one call: of a multi value the first is taken
    NameId name = noName;
    const ParsedScriptLine* line = nullptr;
    const FastExprNode* value = nullptr;  // a loop's condition too
    const FastExprNode* key = nullptr;
    const PlanBlock* body = nullptr;
    std::span<const PlanBranch> branches;
    const FunctionDeclaration* declaration = nullptr;
    const char* fault = nullptr;

    bool isSimple() const { return kind <= StepKind::Evaluate; }
};

struct PlanBranch {
    const ParsedScriptLine* line = nullptr;  // null when the program points outside its lines
    bool isElse = false;
    const FastExprNode* condition = nullptr;  // null when it is not compiled
    const PlanBlock* body = nullptr;
};

struct PlanBlock {
    std::uint32_t chunk = 0;
    bool declaresLocals = false;
    bool mayHoldLabels = false;
    // Makes no locals and holds no labels: it runs without a scope of its own and without being registered.
    bool isPlain = false;
    bool isReturn = false;  // a plain block of one `return`
    bool isSimple = false;  // a plain block of one simple step
    // Guards, each an `if` around a `return`, in front of a `return`. No condition runs script.
    bool isGuarded = false;
    const PlanStep* steps = nullptr;
    std::uint32_t stepCount = 0;
    const char* fault = nullptr;  // raised when the block is entered
};

// A program's tables with every index resolved, made when the program first runs. Damage in the program is
// found here and raised when the damaged part runs. Points into the program.
class RunPlan {
public:
    RunPlan(const BytecodeProgram& program, bool fastExpressions);
    RunPlan(const RunPlan&) = delete;
    RunPlan& operator=(const RunPlan&) = delete;

    const PlanBlock& block(std::uint32_t chunk) const {
        return chunk < blocks_.size() ? blocks_[chunk] : noBlock_;
    }

private:
    friend class RunPlanBuilder;

    std::vector<PlanStep> steps_;
    std::vector<PlanBranch> branches_;
    std::vector<PlanBlock> blocks_;
    PlanBlock noBlock_;
};

// The place of a program's plan in the program. A copy of the program makes its own.
class RunPlanSlot {
public:
    RunPlanSlot() = default;
    RunPlanSlot(const RunPlanSlot&) {}
    RunPlanSlot& operator=(const RunPlanSlot&) {
        plans_[0].reset();
        plans_[1].reset();
        return *this;
    }

    const RunPlan& get(const BytecodeProgram& program, bool fastExpressions) {
        std::unique_ptr<const RunPlan>& plan = plans_[fastExpressions ? 1 : 0];
        if (!plan) plan = std::make_unique<const RunPlan>(program, fastExpressions);
        return *plan;
    }

private:
    std::unique_ptr<const RunPlan> plans_[2];
};

}  // namespace kelmora
