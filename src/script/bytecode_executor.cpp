#include "script/bytecode_executor.h"

#include <stdexcept>

#include "script/indexing.h"
#include "script/statements.h"

namespace kelmora {
namespace {

// The value of the two commonest kinds of node, where it stands; null for what takes longer.
[[gnu::always_inline]] inline const Variable* findLeaf(Interpreter& script, const FastExprNode& node) {
    if (node.kind == FastExprNodeKind::Constant) return &node.constant;
    return node.kind == FastExprNodeKind::Variable ? script.scopes.findQuickly(node.name) : nullptr;
}

// What the node's own code does.
[[gnu::always_inline]] inline const Variable& refer(Interpreter& script, const FastExprNode& node,
                                                    Variable& storage) {
    const Variable* leaf = findLeaf(script, node);
    return leaf ? *leaf : node.refer(script, node, storage);
}

}  // namespace

// A block in which jumps look for labels, for as long as it runs.
class BytecodeExecutor::ActiveBlock {
public:
    ActiveBlock(Interpreter& script, const BytecodeProgram& program, std::uint32_t chunk) : script_(script) {
        script_.activeChunks.push_back({&program, chunk});
    }
    ActiveBlock(const ActiveBlock&) = delete;
    ActiveBlock& operator=(const ActiveBlock&) = delete;
    ~ActiveBlock() { script_.activeChunks.pop_back(); }

private:
    Interpreter& script_;
};

bool BytecodeExecutor::runBlock(const PlanBlock& block, bool useLocalScope, std::uint32_t start) {
    script_.stack.check();
    if (block.fault) throw std::runtime_error(block.fault);
    if (start > block.stepCount) throw std::runtime_error("Bytecode jump target is outside the target chunk");
    const bool wantsScope = useLocalScope && (block.declaresLocals || script_.scopes.hasVisibleLocalScope());
    // Also ends the scope that a write to a local makes where there is none.
    const LocalScopeGuard scope(script_.scopes, wantsScope);
    if (!block.mayHoldLabels) return walkSteps(block, start);
    const ActiveBlock active(script_, program_, block.chunk);
    return walkSteps(block, start);
}

inline bool BytecodeExecutor::jumpCameOutOfBody() const {
    return script_.labels.jumpPending() && !aborted() &&
           (signal_.isNormal() || signal_.kind == BlockSignal::Kind::Jump);
}

inline bool BytecodeExecutor::runBody(const PlanBlock& block) {
    const NativeLevelGuard level(script_.scopes, script_.scopes.nativeLevel() + 1);
    if (block.isSimple && !script_.needsAttention()) return runSimpleBlock(block);
    if (block.isReturn && !script_.needsAttention()) {
        runReturn(block.steps[0]);
        script_.serviceCoroutines();
        return true;
    }
    script_.stack.check();  // the blocks of a damaged image may hold themselves
    return enterBlock(block);
}

inline bool BytecodeExecutor::testCondition(const ParsedScriptLine& line, const FastExprNode* condition,
                                            const char* statement) {
    script_.context.setLine(line);
    return condition ? condition->test(script_, *condition) : script_.evaluateCondition(line, statement);
}

inline bool BytecodeExecutor::runIf(const PlanStep& step) {
    for (const PlanBranch& branch : step.branches) {
        if (!branch.line && !branch.isElse) throw std::runtime_error("Bytecode line index out of range");
        const bool taken = branch.isElse || testCondition(*branch.line, branch.condition, "if");
        if (aborted()) return true;
        if (taken) return runBody(*branch.body);
    }
    return false;
}

inline bool BytecodeExecutor::runReturn(const PlanStep& step) {
    enterLine(step);
    signal_.value = step.kind == StepKind::ReturnValue ? step.value->evaluate(script_, *step.value)
                                                       : script_.evaluateReturn(*step.line);
    signal_.kind = BlockSignal::Kind::Return;
    return true;
}

inline Variable BytecodeExecutor::evaluateValue(const PlanStep& step) {
    enterLine(step);
    Variable value = step.value->evaluate(script_, *step.value);
    if (step.isCall && value.isMulti()) {
        const Variable multi = std::move(value);
        return multi.values().empty() ? Variable() : multi.values()[0];
    }
    return value;
}

inline const Variable& BytecodeExecutor::referToValue(const PlanStep& step, Variable& storage) {
    if (step.isCall) return storage = evaluateValue(step);
    enterLine(step);
    return refer(script_, *step.value, storage);
}

inline void BytecodeExecutor::runSimple(const PlanStep& step) {
    switch (step.kind) {
        case StepKind::AssignName:
            return assignName(step);
        case StepKind::AssignLocal:
            return assignAnyName(step, true);
        case StepKind::AssignNames:
            return assignNames(step);
        case StepKind::UpdateName:
            return updateName(step);
        case StepKind::AssignElement:
            return assignElement(step);
        case StepKind::UpdateElement:
            return updateElement(step);
        default:
            enterLine(step);
            step.value->evaluate(script_, *step.value);
    }
}

// What walking the block would do.
bool BytecodeExecutor::runSimpleBlock(const PlanBlock& block) {
    runSimple(block.steps[0]);
    if (!script_.needsAttention()) return false;
    script_.serviceCoroutines();
    return walkSteps(block, 1);
}

inline bool BytecodeExecutor::execute(const PlanStep& step) {
    switch (step.kind) {
        case StepKind::ReturnValue:
        case StepKind::Return:
            return runReturn(step);
        case StepKind::If:
            return runIf(step);
        case StepKind::While:
            return runWhile(step);
        case StepKind::Repeat:
            return runRepeat(step);
        case StepKind::NumericFor:
            return runNumericFor(step);
        case StepKind::GenericFor:
            return runGenericFor(step);
        case StepKind::DeclareFunction:
            declareFunction(step);
            return false;
        case StepKind::Nest:
            if (step.line) enterLine(step);
            return runBody(*step.body);
        case StepKind::Break:
            enterLine(step);
            signal_.kind = BlockSignal::Kind::Break;
            return true;
        case StepKind::Statement:
            enterLine(step);
            if (!script_.executeAssignment(*step.line, nullptr))
                script_.executeExpressionStatement(*step.line);
            return false;
        default:
            throw std::runtime_error(step.fault);
    }
}

bool BytecodeExecutor::walkSteps(const PlanBlock& block, std::uint32_t start) {
    const PlanStep* const end = block.steps + block.stepCount;
    for (const PlanStep* step = block.steps + start;;) {
        if (script_.needsAttention()) {
            if (script_.labels.jumpPending() && !(step = handleJump(block))) return true;
            if (step == end) return false;
            script_.rethrowPendingCoroutineException();
            if (aborted()) return true;
        }
        if (step == end) return false;
        if (step->isSimple()) {
            runSimple(*step);
        } else if (execute(*step)) {
            script_.serviceCoroutines();
            if (!jumpCameOutOfBody()) return true;
            signal_.kind = BlockSignal::Kind::Normal;
            continue;
        }
        script_.serviceCoroutines();
        ++step;
    }
}

// With a jump on its way: the step of this block to go on with, or null to leave the block.
const PlanStep* BytecodeExecutor::handleJump(const PlanBlock& block) {
    script_.countStep();
    const std::string label = script_.labels.jumpLabel();
    std::uint32_t instruction = 0;
    if (Labels::findInChunk(program_, block.chunk, label, instruction)) {
        script_.labels.clearJump();
        return block.steps + instruction;
    }
    if (ancestorHasLabel(label)) {
        signal_.kind = BlockSignal::Kind::Jump;
        return nullptr;
    }
    script_.labels.clearJump();
    if (!executeRegisteredJumpTarget(label)) throw std::runtime_error("jumpTo target not found: " + label);
    signal_.kind = BlockSignal::Kind::Jump;  // it has ended, and with it all the blocks around it
    return nullptr;
}

bool BytecodeExecutor::ancestorHasLabel(const std::string& label) const {
    std::uint32_t instruction = 0;
    for (auto active = script_.activeChunks.rbegin(); active != script_.activeChunks.rend(); ++active)
        if (Labels::findInChunk(*active->program, active->chunk, label, instruction)) return true;
    return false;
}

bool BytecodeExecutor::executeRegisteredJumpTarget(const std::string& label) {
    Labels::Target target;
    if (!script_.labels.find(label, target)) return false;
    BlockSignal signal;
    {
        const SourceLineGuard line(script_.context);
        const SourceFileGuard source(script_.context, target.program->source);
        const NativeLevelGuard level(script_.scopes, target.nativeLevel);
        BytecodeExecutor(script_, *target.program, signal)
            .resumeBlock(blockOf(script_, *target.program, target.chunk), target.instruction);
    }
    script_.rethrowPendingCoroutineException();
    if (signal.kind == BlockSignal::Kind::Break) throw std::runtime_error("break used outside a loop");
    return true;
}

// --- Statements in their frequent forms ---

void BytecodeExecutor::assignName(const PlanStep& step) {
    if (std::int32_t number = 0; step.value->integer && step.value->integer(script_, *step.value, number)) {
        Variable* target = script_.scopes.findQuicklyMutable(step.name);
        if (target && target->assignPlain(Variable::integer(number))) return;
    }
    assignAnyName(step, false);
}

void BytecodeExecutor::assignAnyName(const PlanStep& step, bool isLocal) {
    Variable value = evaluateValue(step);
    if (aborted()) return;
    if (isLocal) {
        script_.scopes.setLocal(step.name, std::move(value));
    } else {
        script_.scopes.assignDefault(step.name, std::move(value));
    }
}

// A multi value is dealt out among the names.
void BytecodeExecutor::assignNames(const PlanStep& step) {
    enterLine(step);
    const Variable value = step.value->evaluate(script_, *step.value);
    if (aborted()) return;
    const std::span<const Variable> dealt = value.isMulti() ? value.values() : std::span(&value, 1);
    const ParsedAssignment& assignment = *step.line->assignment;
    const bool isLocal = assignment.scopeTarget == ScopeTarget::Local;
    for (std::size_t i = 0; i < assignment.targets.size(); ++i) {
        const NameId name = step.line->analysis[assignment.targets[i].tokenIndex].name;
        Variable part = i < dealt.size() ? dealt[i] : Variable();
        if (isLocal) {
            script_.scopes.setLocal(name, std::move(part));
        } else {
            script_.scopes.assignDefault(name, std::move(part));
        }
    }
}

void BytecodeExecutor::updateName(const PlanStep& step) {
    const Variable* value = findLeaf(script_, *step.value);
    Variable* target = value ? script_.scopes.findQuicklyMutable(step.name) : nullptr;
    if (target && updateInteger(*target, step.operation, *value)) return;
    if (target && target->isString() && step.operation == TokenKind::Plus) {
        enterLine(step);
        appendInPlace(*target, *value);
    } else {
        updateAnyName(step);
    }
}

void BytecodeExecutor::updateAnyName(const PlanStep& step) {
    const Variable value = evaluateValue(step);
    if (aborted()) return;
    Variable* target = script_.scopes.findMutable(step.name);
    if (!target) script_.throwVariableNotFound(*step.line, step.line->assignment->targets[0]);
    updateInPlace(*target, step.operation, value);
}

void BytecodeExecutor::assignElement(const PlanStep& step) {
    const Variable* value = findLeaf(script_, *step.value);
    const Variable* key = value ? findLeaf(script_, *step.key) : nullptr;
    const Variable* container = key ? script_.scopes.findQuickly(step.name) : nullptr;
    Variable* element = container ? findElementMutable(*container, *key) : nullptr;
    if (!element || !element->assignPlain(*value)) assignAnyElement(step);
}

void BytecodeExecutor::assignAnyElement(const PlanStep& step) {
    Variable valueStorage;
    const Variable& value =
        step.key->mayCall ? valueStorage = evaluateValue(step) : referToValue(step, valueStorage);
    if (aborted()) return;
    Variable keyStorage;
    const Variable& key = refer(script_, *step.key, keyStorage);
    if (aborted()) return;
    Variable* container = script_.scopes.findMutable(step.name);
    if (container && container->isTable()) {
        container->table().set(tableKeyOf(key), value);
        return;
    }
    if (Variable* item = container ? findElementMutable(*container, key) : nullptr) {
        *item = value;
        return;
    }
    const Variable keptKey = key;
    const ParsedAssignmentTarget& target = step.line->assignment->targets[0];
    script_.storeKeyed(step.line->analysis[target.tokenIndex], ScopeTarget::Default, {&keptKey, 1}, value);
}

void BytecodeExecutor::updateElement(const PlanStep& step) {
    const Variable* value = findLeaf(script_, *step.value);
    const Variable* key = value ? findLeaf(script_, *step.key) : nullptr;
    const Variable* container = key ? script_.scopes.findQuickly(step.name) : nullptr;
    Variable* element = container ? findElementMutable(*container, *key) : nullptr;
    if (!element || !updateInteger(*element, step.operation, *value)) updateAnyElement(step);
}

void BytecodeExecutor::updateAnyElement(const PlanStep& step) {
    Variable value = evaluateValue(step);
    if (aborted()) return;
    Variable storage;
    const Variable& key = refer(script_, *step.key, storage);
    if (aborted()) return;
    const Variable* container = script_.scopes.find(step.name);
    if (Variable* element = container ? findElementMutable(*container, key) : nullptr) {
        updateInPlace(*element, step.operation, value);
        return;
    }
    const Variable keptKey = key;
    const ParsedAssignment& assignment = *step.line->assignment;
    script_.updateKeyed(*step.line, assignment, assignment.targets[0], {&keptKey, 1}, std::move(value));
}

// --- Blocks ---

inline bool BytecodeExecutor::runRound(const PlanBlock& block) {
    script_.countStep();
    runBody(block);
    if (signal_.isNormal() && !script_.needsAttention()) return true;
    return !signal_.endsLoop() && !loopEnded() && !aborted();
}

bool BytecodeExecutor::runWhile(const PlanStep& step) {
    while (testCondition(*step.line, step.value, "while") && !aborted()) {
        if (!runRound(*step.body)) break;
    }
    return loopEnded();
}

bool BytecodeExecutor::runRepeat(const PlanStep& step) {
    for (;;) {
        script_.countStep();
        const LocalScopeGuard scope(script_.scopes, true);  // stays open for the condition
        {
            const NativeLevelGuard level(script_.scopes, script_.scopes.nativeLevel() + 1);
            runBlock(*step.body, false, 0);
        }
        if (signal_.endsLoop() || loopEnded() || aborted()) return loopEnded();
        script_.context.setLine(*step.line);
        if (step.line->tokens.size() < 2) script_.context.throwError("Missing until condition", "until");
        if (testCondition(*step.line, step.value, "until") || aborted()) return loopEnded();
    }
}

bool BytecodeExecutor::runNumericFor(const PlanStep& step) {
    enterLine(step);
    script_.runNumericFor(*step.line, [&] { return runRound(*step.body); });
    return loopEnded();
}

bool BytecodeExecutor::runGenericFor(const PlanStep& step) {
    enterLine(step);
    script_.walkGenericFor(*step.line, [&] { return runRound(*step.body); });
    return loopEnded();
}

void BytecodeExecutor::declareFunction(const PlanStep& step) {
    enterLine(step);
    script_.throwHeaderFault(*step.line, step.line->functionHeader->fault);
    const Variable function = script_.makeDeclaredCallable(*step.line);
    ScriptCallable& callable = function.function();
    callable.setProgram(program_.shared_from_this(), step.declaration->bodyChunk);
    callable.entry = &blockOf(script_, program_, callable.chunkIndex);
    callable.source = step.declaration->source;
    script_.labels.registerCallable(callable);
    script_.bindFunction(*step.line, function);
}

}  // namespace kelmora
