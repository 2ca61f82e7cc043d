#include <optional>
#include <stdexcept>

#include "script/depth_guard.h"
#include "script/vesper_script.h"

namespace kelmora {

// What a call of a script function changes in the interpreter, undone on every way out.
class CallFrame {
public:
    CallFrame(VesperScript& script, const ScriptCallable& callable, std::span<const Variable> arguments)
        : script_(script),
          line_(script.context_),
          source_(script.context_, callable.sourceDirectory, callable.sourcePath),
          level_(script.scopes_, callable.nativeScopeIndex),
          localBase_(script.scopes_.enterCall()),
          isVariadic_(callable.isVariadic) {
        script_.scopes_.pushCallScope(callable.parameters, arguments);
        if (!isVariadic_) return;
        const std::size_t fixed = std::min(arguments.size(), callable.parameters.size());
        script_.varargs_.emplace_back(arguments.begin() + static_cast<std::ptrdiff_t>(fixed),
                                      arguments.end());
    }
    CallFrame(const CallFrame&) = delete;
    CallFrame& operator=(const CallFrame&) = delete;
    ~CallFrame() {
        if (isVariadic_) script_.varargs_.pop_back();
        script_.scopes_.popCallScope();
        script_.scopes_.leaveCall(localBase_);
    }

private:
    VesperScript& script_;
    SourceLineGuard line_;
    SourceFileGuard source_;
    NativeLevelGuard level_;
    std::uint32_t localBase_;
    bool isVariadic_;
};

Variable VesperScript::invokeCallable(const Variable& callee, std::span<const Variable> arguments) {
    if (callDepth_ == 0 && programDepth_ == 0) stack_.markBase();
    const DepthGuard depth(callDepth_);
    stack_.check();
    if (!callee.isFunction())
        throw std::runtime_error("Attempted to call a non-function value of type " +
                                 std::string(typeName(callee.type())));
    const Variable kept = callee;  // the name that held it may be overwritten by the call
    ScriptCallable& callable = kept.function();
    if (callable.isDecay) {
        coroutines_.start(kept, arguments);
        return {};
    }
    if (callable.isNative) return invokeNative(callable, arguments);
    return callable.program ? invokeProgram(callable, arguments) : invokeBody(callable, arguments);
}

Variable VesperScript::invokeNative(const ScriptCallable& callable, std::span<const Variable> arguments) {
    Variable result = callable.library ? callable.library(*this, arguments)
                                       : callable.native({arguments.begin(), arguments.end()});
    if (shouldAbortForSoftRaisedError()) return {};
    return result;
}

Variable VesperScript::invokeProgram(ScriptCallable& callable, std::span<const Variable> arguments) {
    std::optional<DepthGuard> chunkDepth;
    if (callable.isLoadedChunk) {
        if (!arguments.empty()) throw std::runtime_error("Loaded script chunks do not accept call arguments");
        if (!callable.hasRun) {
            callable.hasRun = true;
            callable.nativeScopeIndex = scopes_.nativeLevel();
            labels_.registerCallable(callable);
        }
        chunkDepth.emplace(chunkDepth_);
    }
    BlockSignal signal;
    {
        const CallFrame frame(*this, callable, arguments);
        executeBytecodeChunkInternal(*callable.program, callable.chunkIndex, signal, true, -1);
        rethrowPendingCoroutineException();
    }
    Variable result = finishCall(signal, Variable());
    if (chunkDepth && chunkDepth_ == 1) scopes_.commitExternals();
    return result;
}

Variable VesperScript::invokeBody(ScriptCallable& callable, std::span<const Variable> arguments) {
    BlockSignal signal;
    Variable value;
    {
        const CallFrame frame(*this, callable, arguments);
        std::uint32_t index = 0;
        value = executeParsedBlock(callable.body, index, signal);
        rethrowPendingCoroutineException();
    }
    if (signal.kind == BlockSignal::Kind::Return) signal.value = value;
    return finishCall(signal, std::move(value));
}

Variable VesperScript::finishCall(BlockSignal& signal, Variable normalValue) {
    if (signal.kind == BlockSignal::Kind::Break) throw std::runtime_error("break used outside a loop");
    if (signal.kind == BlockSignal::Kind::Jump || shouldAbortForSoftRaisedError()) return {};
    return signal.kind == BlockSignal::Kind::Return ? std::move(signal.value) : normalValue;
}

Variable VesperScript::callCallable(const Variable& callee, const std::vector<Variable>& arguments) {
    if (!callee.isFunction()) throw std::runtime_error("callCallable: value is not a function");
    return invokeCallable(callee, arguments);
}

namespace {

Variable protectedFailure(std::string message) {
    return Variable::makeMulti({Variable::boolean(false), Variable::text(std::move(message))});
}

Variable protectedSuccess(Variable result) {
    std::vector<Variable> values{Variable::boolean(true)};
    if (result.isMulti()) {
        values.insert(values.end(), result.values().begin(), result.values().end());
    } else if (!result.isNot()) {
        values.push_back(std::move(result));
    }
    return Variable::makeMulti(std::move(values));
}

}  // namespace

Variable VesperScript::pcallFunction(std::span<const Variable> arguments) {
    if (arguments.empty()) throw std::runtime_error("pcall requires a callable value");
    const std::uint32_t depth = callDepth_;
    softError_.enterProtected(depth);
    Variable result;
    std::string failure;
    bool failed = false;
    try {
        result = invokeCallable(arguments[0], arguments.subspan(1));
    } catch (const std::exception& error) {
        failed = true;
        failure = error.what();
    } catch (...) {
        softError_.leaveProtected();
        throw;
    }
    softError_.leaveProtected();
    std::string message;
    if (softError_.take(depth, message)) return protectedFailure(std::move(message));
    return failed ? protectedFailure(std::move(failure)) : protectedSuccess(std::move(result));
}

}  // namespace kelmora
