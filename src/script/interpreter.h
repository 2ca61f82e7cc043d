#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/fixed_stack.h"
#include "base/host_services.h"
#include "base/native_stack.h"
#include "script/block_signal.h"
#include "script/bytecode_program.h"
#include "script/callable.h"
#include "script/coroutines.h"
#include "script/error_trail.h"
#include "script/labels.h"
#include "script/loops.h"
#include "script/parsed_header.h"
#include "script/scopes.h"
#include "script/soft_error.h"
#include "script/source_context.h"
#include "script/variable.h"

namespace kelmora {

struct Code;
struct Instruction;
class StatementWatcher;
class VesperScript;

// What the parser, the two executors, the coroutines and the library share: the state of one world of script
// and the operations on it. It stands open to all of them; the host sees VesperScript.
struct Interpreter {
    Interpreter(VesperScript& face, HostServices& host);
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    // program_runner.cpp
    // Marks where the native stack begins, unless something runs already.
    void markStackBase() {
        if (callDepth() == 0 && programDepth == 0) stack.markBase();
    }
    Variable runBytecodeProgram(const std::shared_ptr<const BytecodeProgram>& program);
    BytecodeProgram compileToBytecode(const std::string& source);
    BytecodeProgram compileToBytecode(const std::string& source, const std::string& sourcePath);
    // A callable for a whole source. The path may be empty.
    Variable loadChunk(const std::string& source, const std::string& sourcePath);

    void pushVariable(const std::string& name, const Variable& value) {
        scopes.setGlobal(internName(name), value);
    }
    // Finds a path from the working directory, beside the running source, or in the Resources tree.
    std::string resolvePath(const std::string& path) const;
    std::int32_t elapsedMilliseconds() const;

    // calls.cpp
    Variable invokeCallable(const Variable& callee, std::span<const Variable> arguments);
    Variable pcallFunction(std::span<const Variable> arguments);
    void raiseScriptErrorSoft(std::string message) {
        softError.raise(std::move(message));
        askForAttention();
    }
    void requestJump(std::string label) {
        labels.requestJump(std::move(label));
        askForAttention();
    }
    bool shouldAbortForSoftRaisedError() const { return softError.aborts(callDepth()); }

    // indexing.cpp
    Variable getIndexedValue(const Variable& container, const Variable& key);
    // The function that a string's element of this name calls; null where there is none.
    const Variable* findStringMethod(const Variable& name);
    // The element's place, made when it is missing and `create` is set.
    static Variable* getIndexedValueMutable(Variable& container, const Variable& key, bool create);
    static void setIndexedValue(Variable& container, const Variable& key, const Variable& value, bool create);

    Variable evaluateExpression(const ParsedScriptLine& line, std::uint32_t& index);

    // What a running call has taken over from its caller.
    struct CallRecord {
        // Of a call inside running code: its instruction, and the function, which is kept.
        const Instruction* call;
        const Code* code;
        ScriptCallable* callable;
        const ParsedScriptLine* line;  // of a call from elsewhere, or of the expression that the code is
        const SourceFile* file;
        CallScope bottom;  // everything from here on the stack is the call's
        Scopes::View view;
        std::uint32_t openParts;
    };
    [[gnu::always_inline]] void recordSurroundings(CallRecord& record, CallScope bottom) {
        record.file = &context.file();
        record.bottom = bottom;
        record.view = scopes.view();
        record.openParts = openParts.size();
    }
    // Undoes what the newest call has changed.
    [[gnu::always_inline]] inline void leaveCall();

    Variable runLibrary(LibraryFunction body, std::span<const Variable> arguments);
    Variable runBinding(const ScriptCallable& callable, std::span<const Variable> arguments);
    Variable invokeProgram(ScriptCallable& callable, std::span<const Variable> arguments);
    Variable invokeBody(ScriptCallable& callable, std::span<const Variable> arguments);
    Variable finishCall(BlockSignal& signal, Variable normalValue);

    // machine.cpp
    // What the code returns. From the beginning, or from a step of its outermost block.
    Variable runCode(const Code& code, std::optional<std::uint32_t> step = {});
    const Code& chunkCode(const BytecodeProgram& program, std::uint32_t chunk, bool isFunction);
    const Code& expressionCode(const FastExpression& expression);
    // Compiles the function and finds its parameters.
    void prepareCallable(ScriptCallable& callable);

    // statements.cpp: what the machine, the direct executor and the coroutines share
    Variable evaluateRange(const ParsedScriptLine& line, const PreparedExpression& expression,
                           std::string_view leftover);
    bool evaluateCondition(const ParsedScriptLine& line, std::string_view statement);
    Variable executeExpressionStatement(const ParsedScriptLine& line);
    Variable evaluateReturn(const ParsedScriptLine& line);
    // Evaluates the clause of a `for`; the step of a numeric one is not 0.
    NumericLoop openNumericLoop(const ParsedScriptLine& line);
    SequenceWalk openSequenceWalk(const ParsedScriptLine& line);
    // Gives the loop's variables the next element; false behind the last.
    bool bindNext(const ParsedFor& header, CallScope scope, SequenceWalk& walk);
    void throwHeaderFault(const ParsedScriptLine& line, const HeaderFault& fault);
    void bindFunction(const ParsedScriptLine& line, const Variable& function);
    Variable makeDeclaredCallable(const ParsedScriptLine& line) const;
    // Gives a function that is declared inside another one its body.
    void fillDeclaredBody(ScriptCallable& callable, const ScriptCallable& owner,
                          const std::vector<ParsedScriptLine>& lines, std::uint32_t line);
    void bindPair(const ParsedFor& header, CallScope scope, Variable key, Variable value);
    void bindElement(const ParsedFor& header, CallScope scope, Variable element);
    bool isBuiltinWalk(const ParsedScriptLine& line) const;

    // assignment.cpp
    // False when the line is no assignment. The value stored last goes to `result`, if that is wanted.
    bool executeAssignment(const ParsedScriptLine& line, Variable* result);
    void assignTarget(const ParsedScriptLine& line, const ParsedAssignment& assignment,
                      const ParsedAssignmentTarget& target, Variable value, Variable* result);
    void assignKeyed(const ParsedScriptLine& line, const ParsedAssignment& assignment,
                     const ParsedAssignmentTarget& target, Variable value, Variable* result);
    [[noreturn]] void throwVariableNotFound(const ParsedScriptLine& line,
                                            const ParsedAssignmentTarget& target);
    void storePlain(const TokenAnalysis& name, ScopeTarget target, Variable value);
    // The compound form; returns the new value.
    Variable updateKeyed(const ParsedScriptLine& line, const ParsedAssignment& assignment,
                         const ParsedAssignmentTarget& target, std::span<const Variable> keys,
                         Variable value);
    void storeKeyed(const TokenAnalysis& name, ScopeTarget target, std::span<const Variable> keys,
                    const Variable& value);
    Variable* resolveTarget(const TokenAnalysis& name, ScopeTarget target);

    // machine_calls.cpp
    // Null takes the watcher away. It is borrowed.
    void watchStatements(StatementWatcher* by) {
        watcher = by;
        askForAttention();
    }
    void showStatement() {
        if (watcher) [[unlikely]]
            showToWatcher();
    }
    void showToWatcher();

    // block_executor.cpp
    Variable executeParsedBlock(const std::vector<ParsedScriptLine>& lines, std::uint32_t& index,
                                BlockSignal& signal);

    // Something may have to be done between two steps: a jump, a soft error, a coroutine's turn or failure.
    void askForAttention() {
        mayNeedAttention = true;
        callRecords.setOpen(false);
    }
    bool needsAttention() { return mayNeedAttention && lookForAttention(); }
    [[gnu::noinline]] bool lookForAttention() {
        mayNeedAttention =
            labels.jumpPending() || softError.pending() || coroutines.needAttention() || watcher;
        callRecords.setOpen(!mayNeedAttention);
        return mayNeedAttention;
    }

    void countStep() {
        if (--stepsLeft < 0) [[unlikely]]
            failSteps();
    }
    [[noreturn, gnu::noinline]] void failSteps() {
        stepsLeft = 0;
        throw std::runtime_error("Step limit reached");
    }

    // coroutines.cpp
    void rethrowPendingCoroutineException() {
        if (mayNeedAttention) coroutines.rethrowPending();
    }
    void serviceScheduledCoroutineTurn();
    void serviceCoroutines() {
        if (mayNeedAttention && coroutines.wantsTurn()) serviceScheduledCoroutineTurn();
    }

    VesperScript& face;
    HostServices& host;
    NativeStack stack;
    SourceContext context;
    ErrorTrail trail;
    Scopes scopes;
    SoftError softError;
    Labels labels;
    Coroutines coroutines;
    // Set by all that may ask for attention; a look that finds nothing left clears it. Calls are closed
    // meanwhile, so that they need not look at it.
    bool mayNeedAttention = false;
    StatementWatcher* watcher = nullptr;
    // Running calls of script functions have records; all calls from native code are counted, whatever is
    // called.
    static constexpr std::uint32_t maximumCalls = 1 << 16;
    FixedStack<CallRecord> callRecords{maximumCalls};
    std::uint32_t nativeCalls = 0;
    // More inside a call than around it.
    std::uint32_t callDepth() const { return callRecords.size() + nativeCalls; }
    std::uint32_t programDepth = 0;  // running programs
    std::uint32_t chunkDepth = 0;    // running loaded chunks
    std::vector<std::vector<Variable>> varargs;
    // The open `for` loops over containers.
    struct OpenWalk {
        SequenceWalk walk;
        CallScope scope;
    };
    std::vector<OpenWalk> walks;  // those from walkCount on are empty
    std::uint32_t walkCount = 0;
    // What running code has open beside scopes: blocks that jumps look into, and walks, without a program.
    struct OpenPart {
        const BytecodeProgram* program;
        std::uint32_t chunk;
    };
    SmallStack<OpenPart> openParts;
    void closePart() {
        if (!openParts.back().program) walks[--walkCount].walk = {};
        openParts.drop();
    }
    [[gnu::noinline]] void closePartsTo(std::uint32_t count) {
        while (openParts.size() > count) closePart();
    }
    std::unique_ptr<ValuePlace[]> temporaries;
    const std::uint64_t serial;  // tells what was compiled for this interpreter
    // Whole programs that ran: their labels stay reachable.
    std::vector<Variable> programCallables;
    // Off, every expression is evaluated by the token walk. The results are the same.
    bool fastExpressions = true;
    std::int64_t stepsLeft = std::numeric_limits<std::int64_t>::max();
    std::mt19937 generator;
    std::chrono::steady_clock::time_point started = std::chrono::steady_clock::now();
};

inline void Interpreter::leaveCall() {
    const CallRecord& record = callRecords.back();
    context.setFile(*record.file);
    scopes.leaveCall(record.view, record.bottom);
    if (openParts.size() > record.openParts) [[unlikely]]
        closePartsTo(record.openParts);
    callRecords.drop();
}

}  // namespace kelmora
