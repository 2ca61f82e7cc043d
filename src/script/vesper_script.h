#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/host_services.h"
#include "base/native_stack.h"
#include "script/block_signal.h"
#include "script/bytecode_program.h"
#include "script/callable.h"
#include "script/coroutines.h"
#include "script/labels.h"
#include "script/loops.h"
#include "script/parsed_header.h"
#include "script/scopes.h"
#include "script/soft_error.h"
#include "script/source_context.h"
#include "script/variable.h"

namespace kelmora {

// The interpreter. One object is one world of script: its globals, functions and running code.
// Used from one thread. Failures of script are std::runtime_error or RaisedScriptError.
class ArgumentList;

class VesperScript {
public:
    explicit VesperScript(HostServices& host);
    ~VesperScript();
    VesperScript(const VesperScript&) = delete;
    VesperScript& operator=(const VesperScript&) = delete;

    // --- Running source and programs ---
    Variable runScript(const std::string& source);
    Variable runBytecode(BytecodeProgram program);
    Variable runBytecodeProgram(const std::shared_ptr<const BytecodeProgram>& program);
    // Runs a text by the direct executor, without compiling it.
    Variable executeBlock(const std::string& source);

    BytecodeProgram compileToBytecode(const std::string& source);
    BytecodeProgram compileToBytecode(const std::string& source, const std::string& sourcePath);
    static std::vector<unsigned char> serialiseBytecode(const BytecodeProgram& program);
    static BytecodeProgram deserialiseBytecode(std::span<const unsigned char> bytes,
                                               const std::string& sourceName);
    static void saveBytecode(const BytecodeProgram& program, const std::string& path);
    static BytecodeProgram loadBytecode(const std::string& path);

    // --- Globals and functions, for the host ---
    void pushVariable(const std::string& name, const Variable& value);
    // A copy of what the name resolves to; raises "Variable not found: " with the name.
    Variable pullVariable(const std::string& name) const;
    void pushFunction(const std::string& name, NativeFunction body);
    static Variable createNativeCallable(NativeFunction body, const std::string& name,
                                         BuiltinId id = BuiltinId::None);
    static Variable createLibraryCallable(LibraryFunction body, const std::string& name);
    static Variable createBoundCallable(Binding body, const std::string& name);
    // What the host's own functions work on; null until it is set.
    void setHostData(void* data) { hostData_ = data; }
    void* hostData() const { return hostData_; }
    Variable callCallable(const Variable& callee, const std::vector<Variable>& arguments);
    void setNativeStackBudget(std::size_t bytes) { stack_.setBudget(bytes); }
    // Off, every expression is evaluated by the token walk. The results are the same.
    void setFastExpressions(bool on) { fastExpressions_ = on; }
    // Ends whatever runs with an error after so many calls, rounds and jumps, counted from now on.
    void setStepLimit(std::uint64_t steps) { stepsLeft_ = steps; }
    bool stepLimitReached() const { return stepsLeft_ == 0; }

    // --- Paths ---
    // Every backslash becomes a slash, and nothing else changes.
    static std::string normalisePath(const std::string& path);
    // Finds a path from the working directory, beside the running source, or in the Resources tree.
    std::string resolvePath(const std::string& path) const;

    // --- For the library, the walk and the executors ---
    Variable invokeCallable(const Variable& callee, std::span<const Variable> arguments);
    Variable pcallFunction(std::span<const Variable> arguments);
    // A callable for a whole source. The path may be empty.
    Variable loadChunk(const std::string& source, const std::string& sourcePath);
    void raiseScriptErrorSoft(std::string message) {
        softError_.raise(std::move(message));
        mayNeedAttention_ = true;
    }
    void requestJump(std::string label) {
        labels_.requestJump(std::move(label));
        mayNeedAttention_ = true;
    }
    bool shouldAbortForSoftRaisedError() const { return softError_.aborts(callDepth_); }

    Variable getIndexedValue(const Variable& container, const Variable& key);
    // The element's place, made when it is missing and `create` is set.
    static Variable* getIndexedValueMutable(Variable& container, const Variable& key, bool create);
    static void setIndexedValue(Variable& container, const Variable& key, const Variable& value, bool create);

    Variable evaluateExpression(const ParsedScriptLine& line, std::uint32_t& index);

    HostServices& host() { return host_; }
    SourceContext& context() { return context_; }
    Scopes& scopes() { return scopes_; }
    Labels& labels() { return labels_; }
    Coroutines& coroutines() { return coroutines_; }
    NativeStack& nativeStack() { return stack_; }
    std::mt19937& generator() { return generator_; }
    const std::vector<std::vector<Variable>>& varargs() const { return varargs_; }
    std::int32_t elapsedMilliseconds() const;

private:
    friend class CallFrame;
    friend Variable evaluateCall(VesperScript& script, const FastExprNode& node);
    friend Variable evaluateNamedCall(VesperScript& script, const FastExprNode& node);
    friend class CoroutineTurn;
    friend class BytecodeExecutor;

    struct ActiveBytecodeChunk {
        const BytecodeProgram* program;
        std::uint32_t chunk;
    };
    // What a running call has taken over from its caller.
    struct CallRecord {
        const ParsedScriptLine* line;
        const SourceFile* file;
        Scopes::CallerView view;
        CallScope arguments;
    };
    // calls.cpp
    // These evaluate the arguments and call. The second makes them where the parameters will stand.
    [[gnu::always_inline]] inline Variable callNode(const Variable& callee, const FastExprNode& node);
    Variable callBinding(ScriptCallable& callable, const FastExprNode& node);
    Variable callLibrary(LibraryFunction body, const FastExprNode& node);
    Variable callBound(ScriptCallable& callable, const FastExprNode& node);
    Variable callAny(const Variable& callee, const FastExprNode& node);
    [[gnu::always_inline]] inline bool evaluateArguments(const FastExprNode& node, ArgumentList& arguments);
    [[gnu::always_inline]] inline Variable runLibrary(LibraryFunction body,
                                                      std::span<const Variable> arguments);
    Variable runBinding(const ScriptCallable& callable, std::span<const Variable> arguments);
    Variable invokeProgram(ScriptCallable& callable, std::span<const Variable> arguments);
    [[gnu::always_inline]] inline Variable runProgramBody(const ScriptCallable& callable);
    [[gnu::always_inline]] inline Variable evaluateGuarded(const PlanBlock& body);
    Variable invokeBody(ScriptCallable& callable, std::span<const Variable> arguments);
    Variable finishCall(BlockSignal& signal, Variable normalValue);

    // statements.cpp: what both executors and the coroutines share
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
    // Walks what a generic `for` iterates over. The callback binds nothing itself: the loop variables are
    // set before each call. It returns false to stop.
    template <typename Body>
    void walkGenericFor(const ParsedScriptLine& line, Body&& body);
    template <typename Body>
    void runNumericFor(const ParsedScriptLine& line, Body&& body);
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

    // block_executor.cpp
    Variable executeParsedBlock(const std::vector<ParsedScriptLine>& lines, std::uint32_t& index,
                                BlockSignal& signal);
    friend class BlockExecutor;

    // Something may have to be done between two steps: a jump, a soft error, a coroutine's turn or failure.
    bool needsAttention() { return mayNeedAttention_ && lookForAttention(); }
    [[gnu::noinline]] bool lookForAttention() {
        mayNeedAttention_ = labels_.jumpPending() || softError_.pending() || coroutines_.needAttention();
        return mayNeedAttention_;
    }

    void countStep() {
        if (stepsLeft_ == 0) throw std::runtime_error("Step limit reached");
        --stepsLeft_;
    }

    // coroutines.cpp
    void rethrowPendingCoroutineException() {
        if (mayNeedAttention_) coroutines_.rethrowPending();
    }
    void serviceScheduledCoroutineTurn();
    void serviceCoroutines() {
        if (mayNeedAttention_ && coroutines_.wantsTurn()) serviceScheduledCoroutineTurn();
    }

    HostServices& host_;
    void* hostData_ = nullptr;
    NativeStack stack_;
    SourceContext context_;
    Scopes scopes_;
    SoftError softError_;
    Labels labels_;
    Coroutines coroutines_;
    // Set by all that may ask for attention; a look that finds nothing left clears it.
    bool mayNeedAttention_ = false;
    std::uint32_t callDepth_ = 0;
    std::uint32_t programDepth_ = 0;  // running programs
    std::uint32_t chunkDepth_ = 0;    // running loaded chunks
    std::vector<std::vector<Variable>> varargs_;
    SmallStack<CallRecord> callRecords_;
    std::vector<ActiveBytecodeChunk> activeChunks_;
    // Whole programs that ran: their labels stay reachable.
    std::vector<Variable> programCallables_;
    bool fastExpressions_ = true;
    std::uint64_t stepsLeft_ = ~std::uint64_t{0};
    std::mt19937 generator_;
    std::chrono::steady_clock::time_point started_;
};

}  // namespace kelmora
