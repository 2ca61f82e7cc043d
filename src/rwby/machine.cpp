#include "rwby/machine.h"

#include <algorithm>
#include <array>
#include <new>

#include "rwby/compiler.h"

namespace vesper::ruby {
namespace {

constexpr std::size_t valueStackSize = std::size_t{1} << 18;

class DepthScope {
public:
    explicit DepthScope(std::uint32_t& depth) : depth_(depth) {
        if (depth_ >= maximumCallDepth) throw std::runtime_error(stackOverflow);
        ++depth_;
    }
    DepthScope(const DepthScope&) = delete;
    DepthScope& operator=(const DepthScope&) = delete;
    ~DepthScope() { --depth_; }

private:
    std::uint32_t& depth_;
};

void checkNativeArguments(const FunctionObject& function, std::size_t received) {
    if (received >= function.arguments.least && received <= function.arguments.most) return;
    throw std::runtime_error(function.name + " expects " + describeArgumentExpectation(function.arguments));
}

void checkProtectedFunction(Arguments arguments) {
    if (arguments.empty() || !arguments[0].isFunction()) throw std::runtime_error("pcall expects a function");
    const FunctionObject& function = arguments[0].functionObject();
    if (function.kind == FunctionKind::Bound && !function.bound)
        throw std::runtime_error("pcall function handle is empty");
    if (function.kind != FunctionKind::Script) return;
    if (!function.program) throw std::runtime_error("pcall function program is missing");
    if (function.index < 0 || static_cast<std::size_t>(function.index) >= function.program->functions.size())
        throw std::runtime_error("pcall function index is out of range");
}

}  // namespace

std::string locatedText(const Program& program, std::uint32_t line, std::string_view message) {
    return kelmora::guest::formatError(program.sourceName, {line, 0}, message);
}

void runtimeError(const Program& program, std::uint32_t line, std::string_view message) {
    throw kelmora::guest::GuestError(locatedText(program, line, message));
}

RubyValue protectedResult(bool succeeded, RubyValue value) {
    RubyItems items(2);
    items[0].setBoolean(succeeded);
    items[1] = std::move(value);
    return RubyValue::array(std::move(items));
}

std::string textOfFailure(CallSite site) {
    const auto located = [&](const char* message) {
        return site.program ? locatedText(*site.program, site.line, message) : std::string(message);
    };
    try {
        throw;
    } catch (const StepLimitReached&) {
        throw;
    } catch (const kelmora::guest::GuestError& error) {
        return error.what();
    } catch (const std::bad_alloc&) {
        return located("out of memory");
    } catch (const std::exception& error) {
        return located(error.what());
    }
}

void throwFromCall(const CompiledFunction& function, CallSite site) {
    std::string text = textOfFailure(site);
    kelmora::CallTrail trail = kelmora::guest::trailOfFailure();
    addCall(trail, function, site);
    throw kelmora::guest::TracedGuestError(text, std::move(trail));
}

// Function 0 is the program around the functions, which has no name of its own.
bool addCall(kelmora::CallTrail& trail, const CompiledFunction& function, CallSite site) {
    const bool isMain = &function == site.program->functions.data();
    return kelmora::guest::addCall(trail, isMain ? std::string_view() : function.name,
                                   site.program->sourceName, site.line, site.program->source.get());
}

void checkArgumentCount(const CompiledFunction& function, std::size_t received) {
    if (received == function.parameters.size()) return;
    throw std::runtime_error("function '" + function.name + "' expected " +
                             std::to_string(function.parameters.size()) + " arguments but received " +
                             std::to_string(received));
}

ValueStack::ValueStack()
    : begin_(static_cast<RubyValue*>(::operator new(valueStackSize * sizeof(RubyValue)))),
      end_(begin_ + valueStackSize),
      used_(begin_),
      top_(begin_) {}

ValueStack::~ValueStack() {
    std::destroy(begin_, used_);
    ::operator delete(begin_);
}

void ValueStack::fail() {
    throw std::runtime_error(stackOverflow);
}

void ValueStack::extend(RubyValue* top) {
    for (; used_ < top; ++used_) new (used_) RubyValue;
}

StackWindow::StackWindow(ValueStack& stack, std::size_t count)
    : stack_(stack), begin_(stack.top()), count_(count) {
    stack.reserve(begin_, count);
}

StackWindow::~StackWindow() {
    for (std::size_t i = 0; i < count_; ++i) begin_[i].dropReference();
    stack_.setTop(begin_);
}

RubyValue RubyVM::Impl::callValue(const RubyValue& callee, Arguments arguments, CallSite site) {
    if (!callee.isFunction()) throw std::runtime_error("attempted to call a non-function value");
    const FunctionObject& function = callee.functionObject();
    switch (function.kind) {
        case FunctionKind::Script:
            return executeFunction(function.program, function.index, arguments);
        case FunctionKind::Bound: {
            if (!function.bound) throw std::runtime_error("attempted to call a non-function value");
            const DepthScope scope(depth);
            return function.bound(vm, arguments);
        }
        case FunctionKind::Pcall: {
            const DepthScope scope(depth);
            return protectedCall(arguments, site);
        }
        default:
            checkNativeArguments(function, arguments.size());
            return function.native(vm, arguments);
    }
}

RubyValue RubyVM::Impl::executeFunction(const kelmora::Ref<Program>& program, std::int32_t functionIndex,
                                        Arguments arguments) {
    if (!program) throw std::runtime_error("script function program is missing");
    if (functionIndex < 0 || static_cast<std::size_t>(functionIndex) >= program->functions.size())
        throw std::runtime_error("function index is out of range");
    const CompiledFunction& function = program->functions[static_cast<std::size_t>(functionIndex)];
    checkArgumentCount(function, arguments.size());
    nativeStack.check();
    const DepthScope scope(depth);
    countStep();
    if (usesFastForm(function)) return executeFastFunction(*program, function, arguments);
    const kelmora::Ref<Program> kept = program;  // its function may be defined anew
    if (usesInnerCode(function)) return executeInner(kept, function, arguments);
    return executePlain(kept, function, arguments);
}

RubyValue RubyVM::Impl::protectedCall(Arguments arguments, CallSite site) {
    checkProtectedFunction(arguments);
    try {
        return protectedResult(true, callValue(arguments[0], arguments.subspan(1), site));
    } catch (const std::exception&) {
        return protectedResult(false, RubyValue::text(textOfFailure(site)));
    }
}

kelmora::Ref<Program> RubyVM::Impl::compile(std::string_view source, std::string_view chunkName) {
    auto program = compileSource(source, chunkName, nativeStack);
    program->source = std::make_shared<const std::string>(source);
    finalise(*program);
    return program;
}

void RubyVM::Impl::finalise(Program& program) {
    finaliseProgramMetadata(program, globals);
}

// Outermost runs start anew with the steps that they may take.
RubyResult RubyVM::Impl::run(const std::function<kelmora::Ref<Program>()>& load) {
    if (depth == 0) stepsLeft = stepLimit == 0 ? UINT64_MAX : stepLimit;
    if (!nativeStack.isMarked()) nativeStack.markBase();
    try {
        const kelmora::Ref<Program> program = load();
        return {true, "", executeFunction(program, 0, {})};
    } catch (const std::bad_alloc&) {
        return {false, "out of memory", {}};
    } catch (const std::exception& error) {
        return {false, error.what(), {}, kelmora::guest::trailOfFailure()};
    }
}

}  // namespace vesper::ruby
