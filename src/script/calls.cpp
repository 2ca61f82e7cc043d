#include <optional>
#include <stdexcept>

#include "base/depth_guard.h"
#include "script/argument_list.h"
#include "script/binding.h"
#include "script/bytecode_executor.h"
#include "script/fast_calls.h"
#include "script/interpreter.h"

namespace kelmora {

// A call of a script function, from the moment its arguments are made: undoes on every way out what the call
// changes in the interpreter.
class CallFrame {
public:
    explicit CallFrame(Interpreter& script) : script_(script) {
        script.callRecords.push({script.context.line(), &script.context.file(), script.scopes.callerView(),
                                 script.scopes.openCallScope()});
    }
    CallFrame(const CallFrame&) = delete;
    CallFrame& operator=(const CallFrame&) = delete;
    ~CallFrame() {
        const Interpreter::CallRecord& record = script_.callRecords.back();
        script_.context.restoreLine(record.line);
        script_.context.setFile(*record.file);
        script_.scopes.leaveCall(record.view);
        script_.scopes.popCallScope(record.arguments);
        script_.callRecords.drop();
    }

    // Once the arguments are there.
    [[gnu::always_inline]] void enter(const ScriptCallable& callable) {
        script_.scopes.nameArguments(script_.callRecords.back().arguments, callable.parameters);
        script_.scopes.enterCall(callable.nativeScopeIndex);
        if (callable.source.isKnown()) script_.context.setFile(callable.source);
    }
    void enter(const ScriptCallable& callable, std::span<const Variable> arguments) {
        for (const Variable& argument : arguments) script_.scopes.addArgument(Variable(argument));
        enter(callable);
    }

private:
    Interpreter& script_;
};

// What `...` stands for in a variadic call.
class VarargsEntry {
public:
    VarargsEntry(std::vector<std::vector<Variable>>& stack, const ScriptCallable& callable,
                 std::span<const Variable> arguments)
        : stack_(stack), isVariadic_(callable.isVariadic) {
        if (!isVariadic_) return;
        const std::size_t fixed = std::min(arguments.size(), callable.parameters.size());
        stack_.emplace_back(arguments.begin() + static_cast<std::ptrdiff_t>(fixed), arguments.end());
    }
    VarargsEntry(const VarargsEntry&) = delete;
    VarargsEntry& operator=(const VarargsEntry&) = delete;
    ~VarargsEntry() {
        if (isVariadic_) stack_.pop_back();
    }

private:
    std::vector<std::vector<Variable>>& stack_;
    bool isVariadic_;
};

inline Variable Interpreter::runLibrary(LibraryFunction body, std::span<const Variable> arguments) {
    const DepthGuard depth(callDepth);
    stack.check();
    Variable result = body(*this, arguments);
    if (shouldAbortForSoftRaisedError()) return {};
    return result;
}

Variable Interpreter::runBinding(const ScriptCallable& callable, std::span<const Variable> arguments) {
    const DepthGuard depth(callDepth);
    stack.check();
    Variable result = callable.binding(BindingCall(face, callable.name, arguments));
    if (shouldAbortForSoftRaisedError()) return {};
    return result;
}

// What walking the steps would return. The frame puts the native level back.
inline Variable Interpreter::evaluateGuarded(const PlanBlock& body) {
    const PlanStep* step = body.steps;
    for (; step->kind == StepKind::If; ++step) {
        const PlanBranch& guard = step->branches.front();
        context.setLine(*guard.line);
        if (!guard.condition->test(*this, *guard.condition)) continue;
        scopes.setNativeLevel(scopes.nativeLevel() + 1);
        step = guard.body->steps;
        break;
    }
    context.setLine(*step->line);
    Variable result = step->value->evaluate(*this, *step->value);
    if (needsAttention()) {
        serviceCoroutines();
        rethrowPendingCoroutineException();
        if (shouldAbortForSoftRaisedError()) return {};
    }
    return result;
}

inline Variable Interpreter::runProgramBody(const ScriptCallable& callable) {
    countStep();
    const PlanBlock& body = callable.entry
                                ? *callable.entry
                                : BytecodeExecutor::blockOf(*this, *callable.program, callable.chunkIndex);
    if (body.isGuarded && !needsAttention()) return evaluateGuarded(body);
    BlockSignal signal;
    BytecodeExecutor(*this, *callable.program, signal).enterBlock(body);
    rethrowPendingCoroutineException();
    if (signal.kind == BlockSignal::Kind::Return && !needsAttention()) return std::move(signal.value);
    return finishCall(signal, Variable());
}

inline Variable Interpreter::runNoted(const ScriptCallable& callable) {
    try {
        return runProgramBody(callable);
    } catch (...) {
        trail.note(*this);
        throw;
    }
}

// False when a soft error has ended the evaluation.
inline bool Interpreter::evaluateArguments(const FastExprNode& node, ArgumentList& arguments) {
    const FastExprNode* argument = &node.rightNode();
    for (std::uint32_t i = 0; i < node.count; ++i, argument = &argument->nextNode()) {
        arguments.emplace([&] { return argument->evaluate(*this, *argument); });
        if (argument->mayCall && shouldAbortForSoftRaisedError()) return false;
    }
    return true;
}

Variable Interpreter::callBinding(ScriptCallable& callable, const FastExprNode& node) {
    const Ref<ScriptCallable> kept(&callable);  // an argument or the call may overwrite its name
    CallFrame frame(*this);
    const FastExprNode* argument = &node.rightNode();
    for (std::uint32_t i = 0; i < node.count; ++i, argument = &argument->nextNode()) {
        scopes.addArgument(argument->evaluate(*this, *argument));
        if (argument->mayCall && shouldAbortForSoftRaisedError()) return {};
    }
    const DepthGuard depth(callDepth);
    stack.check();
    frame.enter(callable);
    return runNoted(callable);
}

Variable Interpreter::callLibrary(LibraryFunction body, const FastExprNode& node) {
    ArgumentList arguments;
    return evaluateArguments(node, arguments) ? runLibrary(body, arguments.span()) : Variable();
}

Variable Interpreter::callBound(ScriptCallable& callable, const FastExprNode& node) {
    const Ref<ScriptCallable> kept(&callable);  // its name stands in messages until the call has ended
    ArgumentList arguments;
    return evaluateArguments(node, arguments) ? runBinding(callable, arguments.span()) : Variable();
}

Variable Interpreter::callAny(const Variable& callee, const FastExprNode& node) {
    const Variable kept = callee;  // an argument may overwrite the name that held it
    ArgumentList arguments;
    return evaluateArguments(node, arguments) ? invokeCallable(kept, arguments.span()) : Variable();
}

inline Variable Interpreter::callNode(const Variable& callee, const FastExprNode& node) {
    if (callee.isFunction()) {
        ScriptCallable& callable = callee.function();
        if (callable.bindsArguments) return callBinding(callable, node);
        if (callable.library) return callLibrary(callable.library, node);
        if (callable.binding) return callBound(callable, node);
    }
    return callAny(callee, node);
}

Variable evaluateCall(Interpreter& script, const FastExprNode& node) {
    const FastExprNode& calleeNode = node.leftNode();
    Variable storage;
    const Variable& callee = calleeNode.refer(script, calleeNode, storage);
    if (calleeNode.mayCall && script.shouldAbortForSoftRaisedError()) return {};
    return script.callNode(callee, node);
}

Variable evaluateNamedCall(Interpreter& script, const FastExprNode& node) {
    const FastExprNode& calleeNode = node.leftNode();
    const Variable* callee = script.scopes.findQuickly(calleeNode.name);
    return callee ? script.callNode(*callee, node) : evaluateCall(script, node);
}

Variable Interpreter::invokeCallable(const Variable& callee, std::span<const Variable> arguments) {
    markStackBase();
    if (callee.isFunction() && callee.function().library)
        return runLibrary(callee.function().library, arguments);
    const DepthGuard depth(callDepth);
    stack.check();
    if (!callee.isFunction())
        throw std::runtime_error("Attempted to call a non-function value of type " +
                                 std::string(typeName(callee.type())));
    const Variable kept = callee;  // the name that held it may be overwritten by the call
    ScriptCallable& callable = kept.function();
    if (callable.isDecay) {
        mayNeedAttention = true;
        coroutines.start(kept, arguments);
        return {};
    }
    if (callable.binding) return runBinding(callable, arguments);
    if (callable.isNative) {
        Variable result = callable.native({arguments.begin(), arguments.end()});
        return shouldAbortForSoftRaisedError() ? Variable() : result;
    }
    return callable.program ? invokeProgram(callable, arguments) : invokeBody(callable, arguments);
}

Variable Interpreter::invokeProgram(ScriptCallable& callable, std::span<const Variable> arguments) {
    std::optional<DepthGuard> loaded;
    if (callable.isLoadedChunk) {
        if (!arguments.empty()) throw std::runtime_error("Loaded script chunks do not accept call arguments");
        if (!callable.hasRun) {
            callable.hasRun = true;
            callable.nativeScopeIndex = scopes.nativeLevel();
            labels.registerCallable(callable);
        }
        loaded.emplace(chunkDepth);
    }
    Variable result;
    {
        CallFrame frame(*this);
        const VarargsEntry entry(varargs, callable, arguments);
        frame.enter(callable, arguments);
        result = runNoted(callable);
    }
    if (loaded && chunkDepth == 1) scopes.commitExternals();
    return result;
}

Variable Interpreter::invokeBody(ScriptCallable& callable, std::span<const Variable> arguments) {
    BlockSignal signal;
    Variable value;
    {
        CallFrame frame(*this);
        const VarargsEntry entry(varargs, callable, arguments);
        frame.enter(callable, arguments);
        std::uint32_t index = 0;
        value = executeParsedBlock(callable.body, index, signal);
        rethrowPendingCoroutineException();
    }
    if (signal.kind == BlockSignal::Kind::Return) signal.value = value;
    return finishCall(signal, std::move(value));
}

Variable Interpreter::finishCall(BlockSignal& signal, Variable normalValue) {
    if (signal.kind == BlockSignal::Kind::Break) throw std::runtime_error("break used outside a loop");
    if (signal.kind == BlockSignal::Kind::Jump || shouldAbortForSoftRaisedError()) return {};
    return signal.kind == BlockSignal::Kind::Return ? std::move(signal.value) : normalValue;
}

namespace {

Variable protectedFailure(std::string message) {
    std::vector<Variable> values(2);
    values[0] = Variable::boolean(false);
    values[1] = Variable::text(std::move(message));
    return Variable::makeMulti(std::move(values));
}

Variable protectedSuccess(Variable result) {
    std::vector<Variable> values;
    values.reserve(result.isMulti() ? 1 + result.values().size() : 2);
    values.push_back(Variable::boolean(true));
    if (result.isMulti()) {
        values.insert(values.end(), result.values().begin(), result.values().end());
    } else if (!result.isNot()) {
        values.push_back(std::move(result));
    }
    return Variable::makeMulti(std::move(values));
}

}  // namespace

Variable Interpreter::pcallFunction(std::span<const Variable> arguments) {
    if (arguments.empty()) throw std::runtime_error("pcall requires a callable value");
    const std::uint32_t depth = callDepth;
    softError.enterProtected(depth);
    Variable result;
    std::string failure;
    bool failed = false;
    try {
        result = invokeCallable(arguments[0], arguments.subspan(1));
    } catch (const std::exception& error) {
        failed = true;
        failure = error.what();
    } catch (...) {
        softError.leaveProtected();
        throw;
    }
    softError.leaveProtected();
    std::string message;
    if (softError.take(depth, message)) return protectedFailure(std::move(message));
    return failed ? protectedFailure(std::move(failure)) : protectedSuccess(std::move(result));
}

}  // namespace kelmora
