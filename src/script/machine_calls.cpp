#include <algorithm>
#include <stdexcept>

#include "script/code_compiler.h"
#include "script/machine.h"
#include "script/protected_result.h"
#include "script/statement_watcher.h"

// Calls other than the frequent ones, and what a run does when something asks for attention.
namespace kelmora {

void Machine::failCalls(const Instruction* i) {
    enterSite(i);
    failStackFull();
}

const Instruction* Machine::enterWithCare(const Instruction* i, ScriptCallable& callable,
                                          Arguments arguments) {
    if (script_.callRecords.isFull()) failCalls(i);
    enterOpen(i, callable, arguments);
    code_ = &codeForNow(*code_);
    return code_->begin();
}

const Instruction* Machine::enterProtected(const Instruction* i, Arguments arguments) {
    // A protected call begins with its record: what keeps it from having one is no failure of its own.
    if (script_.callRecords.isFull()) failCalls(i);
    if (script_.stepsLeft == 0) countStep(i);
    ScriptCallable& wanted = arguments.first->function();
    ++script_.nativeCalls;
    script_.softError.enterProtected(script_.callDepth());
    protected_.push(protectedAt_);
    setProtectedAt(script_.callRecords.top() + 1);
    return enter(i, wanted, {arguments.first + 1, arguments.bottom});
}

// With the protected call left: what it returned, or a failure that was thrown.
void Machine::endProtected(const char* thrown) {
    setProtectedAt(protected_.back());
    protected_.drop();
    script_.softError.leaveProtected();
    std::string message;
    if (script_.softError.take(script_.callDepth(), message)) {
        result_ = protectedFailure(std::move(message));
    } else {
        result_ = thrown ? protectedFailure(thrown) : protectedSuccess(result_);
        if (thrown) script_.trail.caught(result_.values()[1]);
    }
    --script_.nativeCalls;
}

const Instruction* Machine::recover(const char* message) {
    clearTemporaries();
    if (!protectedAt_) return nullptr;
    const Instruction* call = nullptr;
    while (script_.callRecords.top() >= protectedAt_) call = leave();
    // The exception may have come out of native calls.
    script_.nativeCalls = nativeCalls_ + protected_.size();
    endProtected(message);
    if (!(call->flags & CallFlags::dropsResult)) *call->a->value = std::move(result_);
    dropValue(result_);
    return call + 1;
}

void Machine::abandon() {
    clearTemporaries();
    while (script_.callRecords.top() > base_) leave();
    for (; protected_.size() > 0; protected_.drop()) script_.softError.leaveProtected();
    setProtectedAt(nullptr);
    script_.nativeCalls = nativeCalls_;
}

// Enters a script function or calls anything else; where to go on.
const Instruction* Machine::callOther(const Instruction* i, const Variable& callee, Arguments arguments) {
    enterSite(i);
    const Variable kept = callee;
    if (kept.isFunction() && kept.function().bindsArguments) {
        if (!kept.function().code) script_.prepareCallable(kept.function());
        if (kept.function().boundCode) return enter(i, kept.function(), arguments);
    }
    const std::span<const Variable> given = spanOf(arguments);
    result_ = kept.isFunction() && kept.function().binding ? script_.runBinding(kept.function(), given)
                                                           : script_.invokeCallable(kept, given);
    script_.scopes.calls().dropTo(arguments.bottom);
    return nullptr;
}

// --- Attention ---

void Interpreter::showToWatcher() {
    // What it evaluates is not shown to it.
    StatementWatcher* const looking = std::exchange(watcher, nullptr);
    try {
        looking->beforeStatement(*this);
    } catch (...) {
        watcher = looking;
        throw;
    }
    watchStatements(looking);
}

const Code& Machine::attentiveIfNeeded(const Code& plain) {
    if (!plain.program || plain.isAttentive() || !script_.lookForAttention()) return plain;
    if (!plain.attentive)
        plain.attentive = compileChunk(script_, *plain.program, plain.chunk, plain.isFunction, &plain);
    return *plain.attentive;
}

const Instruction* Machine::attend(const Instruction* behind) {
    if (aborted()) return nullptr;
    const Code& plain = *code_;
    code_ = &attentiveIfNeeded(plain);
    if (code_ == &plain) return behind;
    const auto place = static_cast<std::uint32_t>(plain.placeOf(behind));
    const auto found = std::lower_bound(plain.behindCalls.begin(), plain.behindCalls.end(), place);
    return code_->begin() + code_->behindCalls[static_cast<std::size_t>(found - plain.behindCalls.begin())];
}

void Machine::leaveForError(const Instruction* behind) {
    if (!code_->program || !script_.mayNeedAttention) return;
    enterSite(behind - 1);
    serveSteps(code_->siteOf(behind - 1).depth + 1);
    if (code_->isFunction) script_.rethrowPendingCoroutineException();
}

void Machine::leaveServed(const Instruction* i) {
    result_ = i->b ? takeB(i) : Variable();
    serveSteps(i->number);
    if (!code_->isFunction) return;
    script_.rethrowPendingCoroutineException();
    if (aborted()) result_ = Variable();
}

// Null to leave the code with nothing.
const Instruction* Machine::between(const Instruction* i) {
    const bool atEnd = i->flags != 0;
    if (!script_.needsAttention()) {
        code_ = code_->plain;
        return code_->begin() + code_->betweenSteps[i->number].at;
    }
    enterSite(i);
    if (script_.labels.jumpPending()) return jumpToLabel(i);
    if (atEnd) return i + 1;
    script_.rethrowPendingCoroutineException();
    if (aborted()) return nullptr;
    script_.showStatement();
    return i + 1;
}

// With a jump on its way.
const Instruction* Machine::jumpToLabel(const Instruction* i) {
    script_.countStep();
    const CodeBlock& block = code_->blocks[code_->betweenSteps[i->number].block];
    const std::string label = script_.labels.jumpLabel();
    std::uint32_t step = 0;
    if (Labels::findInChunk(*code_->program, block.chunk, label, step)) {
        script_.labels.clearJump();
        return code_->begin() + block.starts[step];
    }
    if (activeBlockHas(label)) return code_->begin() + block.exit;
    script_.labels.clearJump();
    if (!runRegisteredTarget(label)) throw std::runtime_error("jumpTo target not found: " + label);
    // It has ended, and with it all the blocks around here.
    serveSteps(code_->siteOf(i).depth);
    return code_->begin() + code_->blocks[0].exit;
}

bool Machine::activeBlockHas(const std::string& label) const {
    std::uint32_t step = 0;
    for (std::uint32_t n = script_.openParts.size(); n > 0; --n) {
        const Interpreter::OpenPart& active = script_.openParts[n - 1];
        if (active.program && Labels::findInChunk(*active.program, active.chunk, label, step)) return true;
    }
    return false;
}

bool Machine::runRegisteredTarget(const std::string& label) {
    Labels::Target target;
    if (!script_.labels.find(label, target)) return false;
    script_.stack.check();
    const SourceLineGuard line(script_.context);
    const SourceFileGuard source(script_.context, target.program->source);
    const NativeLevelGuard level(script_.scopes, target.nativeLevel);
    script_.runCode(script_.chunkCode(*target.program, target.chunk, false), target.instruction);
    script_.rethrowPendingCoroutineException();
    return true;
}

}  // namespace kelmora
