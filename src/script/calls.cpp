#include <algorithm>
#include <optional>
#include <stdexcept>

#include "base/depth_guard.h"
#include "script/binding.h"
#include "script/interpreter.h"
#include "script/protected_result.h"

namespace kelmora {

// A call of a script function from outside running code.
class CallFrame {
public:
    CallFrame(Interpreter& script, ScriptCallable& callable)
        : script_(script), line_(script.context), level_(script.scopes, script.scopes.nativeLevel()) {
        if (script.callRecords.isFull()) failStackFull();
        Interpreter::CallRecord& record = script.callRecords.push();
        record.call = nullptr;
        record.code = nullptr;
        record.callable = &callable;
        record.line = script.context.line();
        script.recordSurroundings(record, script.scopes.calls().top());
    }
    void enter(const ScriptCallable& callable, std::span<const Variable> arguments) {
        Scopes& scopes = script_.scopes;
        scopes.enterCall();
        scopes.setNativeLevel(callable.nativeScopeIndex);
        const CallScope parameters = scopes.pushCallScope(callable.parameters);
        const std::size_t count = std::min(arguments.size(), callable.parameters.size());
        std::copy_n(arguments.begin(), count, parameters);
        if (callable.source.isKnown()) script_.context.setFile(callable.source);
    }
    CallFrame(const CallFrame&) = delete;
    CallFrame& operator=(const CallFrame&) = delete;
    ~CallFrame() { script_.leaveCall(); }

private:
    Interpreter& script_;
    const SourceLineGuard line_;
    const NativeLevelGuard level_;
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

Variable Interpreter::runLibrary(LibraryFunction body, std::span<const Variable> arguments) {
    const DepthGuard depth(nativeCalls);
    stack.check();
    Variable result = body(*this, arguments);
    if (shouldAbortForSoftRaisedError()) return {};
    return result;
}

Variable Interpreter::runBinding(const ScriptCallable& callable, std::span<const Variable> arguments) {
    const DepthGuard depth(nativeCalls);
    stack.check();
    Variable result = callable.binding(BindingCall(face, callable.name, arguments));
    if (shouldAbortForSoftRaisedError()) return {};
    return result;
}

Variable Interpreter::invokeCallable(const Variable& callee, std::span<const Variable> arguments) {
    markStackBase();
    if (callee.isFunction() && callee.function().library)
        return runLibrary(callee.function().library, arguments);
    const DepthGuard depth(nativeCalls);
    stack.check();
    if (!callee.isFunction())
        throw std::runtime_error("Attempted to call a non-function value of type " +
                                 std::string(typeName(callee.type())));
    const Variable kept = callee;  // the name that held it may be overwritten by the call
    ScriptCallable& callable = kept.function();
    if (callable.isDecay) {
        askForAttention();
        coroutines.start(scopes, kept, arguments);
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
        CallFrame frame(*this, callable);
        const VarargsEntry entry(varargs, callable, arguments);
        frame.enter(callable, arguments);
        countStep();
        if (!callable.code) prepareCallable(callable);
        result = runCode(*callable.code);
    }
    if (loaded && chunkDepth == 1) scopes.commitExternals();
    return result;
}

Variable Interpreter::invokeBody(ScriptCallable& callable, std::span<const Variable> arguments) {
    BlockSignal signal;
    Variable value;
    {
        CallFrame frame(*this, callable);
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

Variable protectedFailure(std::string message) {
    std::vector<Variable> values(2);
    values[0] = Variable::boolean(false);
    values[1] = Variable::text(std::move(message));
    return Variable::makeMulti(std::move(values));
}

Variable protectedSuccess(const Variable& result) {
    const std::span<const Variable> results =
        result.isMulti() ? result.values() : std::span(&result, result.isNot() ? 0 : 1);
    std::vector<Variable> values(1 + results.size());
    values[0] = Variable::boolean(true);
    std::copy(results.begin(), results.end(), values.begin() + 1);
    return Variable::makeMulti(std::move(values));
}

Variable Interpreter::pcallFunction(std::span<const Variable> arguments) {
    if (arguments.empty()) throw std::runtime_error("pcall requires a callable value");
    const std::uint32_t depth = callDepth();
    softError.enterProtected(depth);
    Variable result;
    std::string failure;
    bool failed = false;
    try {
        result = invokeCallable(arguments[0], arguments.subspan(1));
    } catch (const std::exception& error) {
        failed = true;
        failure = error.what();
        trail.note(*this, failure);
    } catch (...) {
        softError.leaveProtected();
        throw;
    }
    softError.leaveProtected();
    std::string message;
    if (softError.take(depth, message)) return protectedFailure(std::move(message));
    if (!failed) return protectedSuccess(result);
    Variable results = protectedFailure(std::move(failure));
    trail.caught(results.values()[1]);
    return results;
}

}  // namespace kelmora
