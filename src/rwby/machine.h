#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "guest/traced_error.h"
#include "rwby/globals.h"
#include "rwby/library/random_source.h"
#include "rwby/ruby_vm.h"

namespace vesper::ruby {

// Ends a run for good: no program catches it.
class StepLimitReached : public std::exception {
public:
    const char* what() const noexcept override { return "Step limit reached"; }
};

// Calls within each other before "Stack overflow"; the native stack may end earlier.
constexpr std::uint32_t maximumCallDepth = 100'000;
inline constexpr const char* stackOverflow = "Stack overflow: calls or expressions are nested too deeply";

// The place of a call, where one is known.
struct CallSite {
    const Program* program = nullptr;
    std::uint32_t line = 0;
};

// A failure with its place in front.
std::string locatedText(const Program& program, std::uint32_t line, std::string_view message);
[[noreturn]] void runtimeError(const Program& program, std::uint32_t line, std::string_view message);
// Called in a handler: the text of the exception at hand, with the place unless it has one already. What no
// program may catch goes on.
std::string textOfFailure(CallSite site);

// Called in a handler: raises the failure with its text and the call that it leaves.
[[noreturn]] void throwFromCall(const CompiledFunction& function, CallSite site);
// False when the trail is full.
bool addCall(kelmora::CallTrail& trail, const CompiledFunction& function, CallSite site);

// Memory for the registers of all calls at work. It never moves, and every value in use is a valid one.
class ValueStack {
public:
    ValueStack();
    ~ValueStack();
    ValueStack(const ValueStack&) = delete;
    ValueStack& operator=(const ValueStack&) = delete;

    RubyValue* top() const { return top_; }
    void setTop(RubyValue* top) { top_ = top; }
    // The same as reserve, where no value is to be made; false when there is one.
    [[nodiscard]] bool tryReserve(RubyValue* base, std::int32_t count) {
        if (base + count > used_) return false;
        top_ = base + count;
        return true;
    }
    // Makes so many values from `base` on usable and ends behind them; raises when the memory ends.
    void reserve(RubyValue* base, std::size_t count) {
        if (count > static_cast<std::size_t>(end_ - base)) fail();
        if (base + count > used_) extend(base + count);
        top_ = base + count;
    }

private:
    [[noreturn]] static void fail();
    void extend(RubyValue* top);

    RubyValue* begin_;
    RubyValue* end_;
    RubyValue* used_;  // values below are constructed
    RubyValue* top_;
};

// Registers above the calls at work, given back at the end of the scope.
class StackWindow {
public:
    StackWindow(ValueStack& stack, std::size_t count);
    StackWindow(const StackWindow&) = delete;
    StackWindow& operator=(const StackWindow&) = delete;
    ~StackWindow();

    RubyValue* values() const { return begin_; }

private:
    ValueStack& stack_;
    RubyValue* begin_;
    std::size_t count_;
};

// Where a caller goes on when its callee returns.
struct InnerFrame {
    const CompiledFunction* function;
    const InnerInstruction* next;
    RubyValue* base;
    std::int32_t target;
    bool isProtected;  // the callee was called through pcall
};

class RubyVM::Impl {
public:
    Impl(RubyVM& owner, kelmora::HostServices& services, kelmora::NativeStack& native)
        : vm(owner), host(services), nativeStack(native) {}

    // Failures that have no place yet leave as they are. Callee and arguments are kept by the caller.
    RubyValue callValue(const RubyValue& callee, Arguments arguments, CallSite site = {});
    RubyValue executeFunction(const kelmora::Ref<Program>& program, std::int32_t functionIndex,
                              Arguments arguments);
    // The instructions as they stand, with a stack of their own: what the quicker ways have to agree with.
    RubyValue executePlain(const kelmora::Ref<Program>& program, const CompiledFunction& function,
                           Arguments arguments);
    RubyValue executeFastFunction(const Program& program, const CompiledFunction& function,
                                  Arguments arguments);
    RubyValue executeInner(const kelmora::Ref<Program>& program, const CompiledFunction& function,
                           Arguments arguments);
    // [true, value] or [false, text] for the function in front of its arguments.
    RubyValue protectedCall(Arguments arguments, CallSite site);

    // Runs what `load` gives; its failures and the run's are in the result.
    RubyResult run(const std::function<kelmora::Ref<Program>()>& load);
    kelmora::Ref<Program> compile(std::string_view source, std::string_view chunkName);
    void finalise(Program& program);

    void countStep() {
        if (--stepsLeft == 0) throw StepLimitReached();
    }
    bool usesFastForm(const CompiledFunction& function) const {
        return function.fast.kind != FastKind::None && mode == ExecutionMode::Full;
    }
    bool usesInnerCode(const CompiledFunction& function) const {
        return function.inner.exists() && mode != ExecutionMode::PlainInstructions;
    }

    RubyVM& vm;
    kelmora::HostServices& host;
    kelmora::NativeStack& nativeStack;
    Globals globals;
    ValueStack stack;
    // Of inner code, over all runs within each other, and the end of those in use. A frame is a call of
    // `depth`.
    std::unique_ptr<InnerFrame[]> frames = std::make_unique_for_overwrite<InnerFrame[]>(maximumCallDepth);
    InnerFrame* frameEnd = frames.get();
    RandomSource random;
    std::uint64_t stepLimit = 0;
    std::uint64_t stepsLeft = UINT64_MAX;
    std::uint32_t depth = 0;  // of calls within each other, whatever runs them
    ExecutionMode mode = ExecutionMode::Full;
};

// Raises for a count that is not the function's.
void checkArgumentCount(const CompiledFunction& function, std::size_t received);

// What pcall gives: [true, value] or [false, text].
RubyValue protectedResult(bool succeeded, RubyValue value);

}  // namespace vesper::ruby
