#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/small_stack.h"
#include "script/code.h"
#include "script/interpreter.h"

namespace kelmora {

[[gnu::always_inline]] inline void dropValue(Variable& value) {
    const Variable old(std::move(value));
}

// Lets go of what the instruction's temporaries hold.
[[gnu::always_inline]] inline void useUp(const Instruction& i) {
    if (i.temporaries & Instruction::usesUpB) dropValue(*i.b->value);
    if (i.temporaries & Instruction::usesUpC) dropValue(*i.c->value);
}

// One run of code: the loop, and the calls that it makes without recursion. An instruction looks at its
// operands where they stand and does the frequent case, mostly of integers, in place; everything else it
// leaves to a function, which first notes the place for messages.
class Machine {
public:
    explicit Machine(Interpreter& script)
        : script_(script),
          base_(script.callRecords.top()),
          boundary_(base_),
          level_(script.scopes.nativeLevel()),
          nativeCalls_(script.nativeCalls),
          line_(script.context.line()) {}

    // The first instruction: of a step of the outermost block, which holds labels, or of all.
    const Instruction* begin(const Code& code, std::optional<std::uint32_t> step) {
        code_ = &codeForNow(code);
        if (!step || code_->blocks.empty()) return code_->begin();
        openBlock(code_->begin());
        return code_->begin() + code_->blocks[0].starts[*step];
    }
    // Makes the code ready to run.
    static void link(Interpreter& script, Code& code);
    // What the code returns. From behind a call, with `attends` set. Without an instruction, finds out where
    // it carries out each operation.
    Variable execute(const Instruction* i, bool attends);
    // After an exception: ends all calls down to the newest protected one, which gives false and the message,
    // and tells where to go on; null where there is none.
    const Instruction* recover(const char* message);
    // Ends all calls of this run.
    void abandon();

private:
    static inline const Variable nothing_;

    bool aborted() const { return script_.shouldAbortForSoftRaisedError(); }

    // Notes the instruction's place, for what may fail or look at it.
    void enterSite(const Instruction* i) {
        const CodeSite& site = code_->siteOf(i);
        if (site.line) {
            script_.context.setLine(*site.line);
        } else if (!code_->program && script_.context.line() != line_) {
            script_.context.restoreLine(line_);  // which a call has left behind
        }
        script_.scopes.setNativeLevel(nativeLevel() + site.depth);
    }
    // Of the running function.
    std::uint32_t nativeLevel() const {
        const bool isCall = script_.callRecords.top() != base_;
        return isCall ? script_.callRecords.back().callable->nativeScopeIndex : level_;
    }
    void countStep(const Instruction* i) {
        if (--script_.stepsLeft < 0) [[unlikely]]
            failSteps(i);
    }
    [[noreturn]] void failSteps(const Instruction* i) {
        enterSite(i);
        script_.failSteps();
    }
    const ParsedScriptLine& lineOf(const Instruction* i) const { return *code_->siteOf(i).line; }

    const Variable& read(const Instruction* i, Place* place) {
        if (!place->value->isUnfound()) return *place->value;
        enterSite(i);
        const Variable* const found = script_.scopes.find(*static_cast<Cell*>(place));
        return found ? *found : nothing_;
    }
    Variable take(const Instruction* i, Place* place, bool isTemporary) {
        return isTemporary ? Variable(std::move(*place->value)) : Variable(read(i, place));
    }
    void store(Place* place, Variable&& value) {
        if (!place->value->isUnfound()) {
            *place->value = std::move(value);
        } else {
            script_.scopes.assignDefault(*static_cast<Cell*>(place), std::move(value));
        }
    }
    Variable takeB(const Instruction* i) { return take(i, i->b, i->temporaries & Instruction::usesUpB); }
    Variable takeC(const Instruction* i) { return take(i, i->c, i->temporaries & Instruction::usesUpC); }

    // The general ways of the instructions.
    void move(const Instruction* i);
    void keepFirst(const Instruction* i);
    void deal(const Instruction* i);
    void readScoped(const Instruction* i);
    void makeVarargs(const Instruction* i);
    void operate(const Instruction* i);
    void pushOperated(const Instruction* i) {
        operate(i);
        script_.scopes.calls().push(std::move(*i->a->value));
    }
    void update(const Instruction* i);
    void negate(const Instruction* i);
    void invert(const Instruction* i);
    void measure(const Instruction* i);
    bool compare(const Instruction* i, TokenKind comparison);
    void compareInto(const Instruction* i);
    bool test(const Instruction* i);
    void element(const Instruction* i);
    void member(const Instruction* i);
    void setElement(const Instruction* i);
    void updateElement(const Instruction* i);
    void addItems(const Instruction* i);
    void checkKey(const Instruction* i);
    void setEntry(const Instruction* i);
    void pushOther(const Instruction* i);
    void runLine(const Instruction* i);
    void testLine(const Instruction* i);
    void returnLine(const Instruction* i);
    void declare(const Instruction* i);
    void openBlock(const Instruction* i);
    void closeBlock(const Instruction* i);
    void openFor(const Instruction* i);
    void openForLine(const Instruction* i);
    void pushLoop(const ParsedFor& header, const NumericLoop& loop);
    bool roundOfFor(bool isFirst);
    void openWalk(const Instruction* i);
    void closeWalk();
    [[noreturn]] void fail(const Instruction* i);

    // Of a call: the newest values of the stack. Everything from `bottom` on goes with the call.
    struct Arguments {
        Variable* first;
        CallScope bottom;
    };
    Arguments newestArguments(std::size_t count, std::size_t others) const {
        Variable* const first = script_.scopes.calls().top() - count;
        return {first, first - others};
    }
    std::span<const Variable> spanOf(Arguments arguments) const {
        return {arguments.first, static_cast<const Variable*>(script_.scopes.calls().top())};
    }
    [[gnu::always_inline]] inline const Instruction* enter(const Instruction* i, ScriptCallable& callable,
                                                           Arguments arguments);
    [[gnu::always_inline]] inline const Instruction* enterOpen(const Instruction* i, ScriptCallable& callable,
                                                               Arguments arguments);
    // When calls are closed.
    const Instruction* enterWithCare(const Instruction* i, ScriptCallable& callable, Arguments arguments);
    [[gnu::always_inline]] inline void callLibrary(const Instruction* i, LibraryFunction body,
                                                   Arguments arguments);
    [[gnu::always_inline]] inline bool isProtectable(const ScriptCallable& callable,
                                                     Arguments arguments) const;
    [[noreturn, gnu::noinline]] void failCalls(const Instruction* i);
    const Instruction* enterProtected(const Instruction* i, Arguments arguments);
    void endProtected(const char* thrown = nullptr);
    void clearTemporaries() {
        script_.scopes.calls().clearNext();
        for (std::size_t i = 0; i < temporaryCount; ++i) script_.temporaries[i].own = Variable();
    }
    const Instruction* callOther(const Instruction* i, const Variable& callee, Arguments arguments);
    [[gnu::always_inline]] inline const Instruction* leave();

    // The attentive code while there is something to look for.
    const Code& codeForNow(const Code& plain) {
        return script_.mayNeedAttention ? attentiveIfNeeded(plain) : plain;
    }
    const Code& attentiveIfNeeded(const Code& plain);
    // Behind an instruction that ran script, with something to look for: where to go on, or null to leave the
    // code with nothing, since an error is on its way.
    const Instruction* attend(const Instruction* behind);
    void leaveForError(const Instruction* behind);
    const Instruction* between(const Instruction* i);
    const Instruction* jumpToLabel(const Instruction* i);
    bool activeBlockHas(const std::string& label) const;
    bool runRegisteredTarget(const std::string& label);
    void serveSteps(std::uint32_t count) {
        while (count-- > 0) script_.serviceCoroutines();
    }
    void leaveServed(const Instruction* i);

    Interpreter& script_;
    const Code* code_ = nullptr;
    const void* const* handlers_ = nullptr;
    using CallRecord = Interpreter::CallRecord;
    const CallRecord* base_;  // top of the calls that this run did not make
    // A return from a call that is not above these ends the run or a protected call.
    const CallRecord* boundary_;
    // What was there where the run began.
    std::uint32_t level_;
    std::uint32_t nativeCalls_;
    const ParsedScriptLine* line_;
    Variable result_;  // of a call or of the code

    // The running protected calls of this run, by the top of the calls with theirs.
    SmallStack<const CallRecord*> protected_;
    const CallRecord* protectedAt_ = nullptr;  // the newest one
    void setProtectedAt(const CallRecord* calls) {
        protectedAt_ = calls;
        boundary_ = calls ? calls : base_;
    }
};

// A lack of records or steps fails before anything has changed.
inline const Instruction* Machine::enter(const Instruction* i, ScriptCallable& callable,
                                         Arguments arguments) {
    if (!script_.callRecords.isOpen()) [[unlikely]]
        return enterWithCare(i, callable, arguments);
    return enterOpen(i, callable, arguments);
}

inline const Instruction* Machine::enterOpen(const Instruction* i, ScriptCallable& callable,
                                             Arguments arguments) {
    Interpreter& script = script_;
    countStep(i);
    callable.retain();  // what it is called by may be overwritten
    CallRecord& record = script.callRecords.push();
    record.call = i;
    record.code = code_;
    record.callable = &callable;
    record.line = line_;
    script.recordSurroundings(record, arguments.bottom);
    script.scopes.enterCall();
    script.scopes.nameArguments(arguments.first, callable.parameterCells.data(), callable.parameterCount);
    if (callable.source.isKnown()) [[likely]]
        script.context.setFile(callable.source);
    code_ = callable.boundCode;
    return code_->begin();
}

// Gives back what the newest call has taken; its instruction.
inline const Instruction* Machine::leave() {
    Interpreter& script = script_;
    const CallRecord& record = script.callRecords.back();
    const Instruction* const call = record.call;
    ScriptCallable* const callable = record.callable;
    code_ = record.code;
    script.leaveCall();
    if (callable->release()) [[unlikely]]
        Variable::destroyFunction(callable);
    return call;
}

}  // namespace kelmora
