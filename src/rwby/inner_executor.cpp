#include <new>

#include "rwby/machine.h"
#include "rwby/map_object.h"
#include "rwby/operations.h"

// Labels as values: each instruction ends in a jump of its own, which the processor predicts by itself.
#pragma GCC diagnostic ignored "-Wpedantic"

namespace vesper::ruby {
namespace {

template <OpCode op>
bool compareIntegers(std::int64_t a, std::int64_t b) {
    if constexpr (op == OpCode::Equal) return a == b;
    if constexpr (op == OpCode::NotEqual) return a != b;
    if constexpr (op == OpCode::Less) return a < b;
    if constexpr (op == OpCode::LessEqual) return a <= b;
    if constexpr (op == OpCode::Greater) return a > b;
    if constexpr (op == OpCode::GreaterEqual) return a >= b;
}

// Inner code from the call of one function to its return. Calls of other functions with inner code stay in
// the same loop; their registers begin where the caller put the arguments.
class InnerRun {
public:
    InnerRun(RubyVM::Impl& machine, const Program& program, const CompiledFunction& function, RubyValue* base)
        : machine_(machine), entryFrame_(machine.frameEnd) {
        program_ = &program;
        enter(&function, base, function.parameters.size());
        entryTop_ = machine.stack.top();
    }

    RubyValue run() {
        for (;;) {
            try {
                return dispatch();
            } catch (const StepLimitReached&) {
                unwind();
                throw;
            } catch (const std::exception&) {
                std::string text = textOfFailure({program_, currentLine()});
                kelmora::CallTrail trail = hasProtectedCall() ? kelmora::CallTrail() : trailUntilHere();
                if (!recover(text)) throw kelmora::guest::TracedGuestError(text, std::move(trail));
            }
        }
    }

private:
    RubyValue dispatch();

    std::size_t position() const {
        return static_cast<std::size_t>(pc_ - function_->inner.instructions.data()) - 1;
    }
    const InnerLines& lines() const { return function_->inner.lines[position()]; }
    std::uint32_t currentLine() const { return failedLine_ != 0 ? failedLine_ : lines().op; }

    RubyValue& at(std::int32_t operand) const {
        return *reinterpret_cast<RubyValue*>(spaces_[operand & 3] + static_cast<std::uintptr_t>(operand));
    }
    // Addresses less the bits that the operands have for them.
    void setBase(RubyValue* base) { spaces_[0] = reinterpret_cast<std::uintptr_t>(base); }
    RubyValue* base() const { return reinterpret_cast<RubyValue*>(spaces_[0]); }
    void setProgram(const Program* program) {
        program_ = program;
        spaces_[1] = reinterpret_cast<std::uintptr_t>(program_->constants.data()) - 1;
    }
    void refreshGlobals() { spaces_[2] = reinterpret_cast<std::uintptr_t>(machine_.globals.values()) - 2; }
    // The operand's value, which may be of a global that has the name of an unassigned local.
    const RubyValue& fetch(std::int32_t operand, std::uint32_t line) {
        const RubyValue& value = at(operand);
        return value.isUndefined() ? fetchUndefined(operand, line) : value;
    }
    const RubyValue& fetchUndefined(std::int32_t operand, std::uint32_t line);
    std::uint32_t lineOfThird() const { return function_->inner.lines[position() + 1].op; }

    void enter(const CompiledFunction* function, RubyValue* base, std::size_t count);
    const InnerFrame& popFrame();
    RubyValue* resume(const InnerFrame& frame);
    bool leave(RubyValue result);
    bool leaveWith(const InnerInstruction& i);
    void releaseAbove(RubyValue* top);
    void unwind();
    bool recover(std::string_view text);
    bool hasProtectedCall() const;
    kelmora::CallTrail trailUntilHere() const;

    [[gnu::noinline]] void slowBinary(const InnerInstruction& i, OpCode op);
    [[gnu::noinline]] bool slowTest(const InnerInstruction& i, OpCode op);
    template <OpCode op>
    bool test(const InnerInstruction& i) {
        const RubyValue& a = at(i.a);
        const RubyValue& b = at(i.b);
        if constexpr (op == OpCode::And || op == OpCode::Or) {
            if (a.isBoolean() && b.isBoolean())
                return op == OpCode::And ? a.booleanValue() && b.booleanValue()
                                         : a.booleanValue() || b.booleanValue();
        } else if (a.isInteger() && b.isInteger()) {
            return compareIntegers<op>(a.integerValue(), b.integerValue());
        }
        return slowTest(i, op);
    }
    [[gnu::noinline]] void slowIndex(const InnerInstruction& i);
    void index(const InnerInstruction& i);
    [[gnu::noinline]] void slowSetIndex(const InnerInstruction& i);
    void setIndex(const InnerInstruction& i);
    void call(const InnerInstruction& i);
    void callScript(const InnerInstruction& i, const FunctionObject& function, std::size_t count);
    [[gnu::noinline]] void callProtected(const InnerInstruction& i);
    [[gnu::noinline]] void raise(const InnerInstruction& i);
    void pushFrame(std::int32_t target, bool isProtected);
    void defineFunction(const InnerInstruction& i);
    void makeArray(const InnerInstruction& i);

    RubyVM::Impl& machine_;
    InnerFrame* entryFrame_;
    const Program* program_ = nullptr;
    const CompiledFunction* function_ = nullptr;
    const InnerInstruction* pc_ = nullptr;
    std::uintptr_t spaces_[4] = {};  // by OperandSpace
    RubyValue* entryTop_ = nullptr;
    std::uint32_t failedLine_ = 0;  // where it is not the instruction's own
    RubyValue result_;
};

void InnerRun::enter(const CompiledFunction* function, RubyValue* base, std::size_t count) {
    machine_.stack.reserve(base, static_cast<std::size_t>(function->inner.frameSize));
    const std::size_t locals = function->localNames.size();
    for (std::size_t i = count; i < locals; ++i) base[i].setUndefined();
    function_ = function;
    pc_ = function->inner.instructions.data();
    setBase(base);
    setProgram(function->inner.program);
    refreshGlobals();
}

void InnerRun::releaseAbove(RubyValue* top) {
    for (RubyValue* value = machine_.stack.top(); value > top;) (--value)->dropReference();
    machine_.stack.setTop(top);
}

const InnerFrame& InnerRun::popFrame() {
    --machine_.depth;
    return *--machine_.frameEnd;
}

// Goes on in a caller: the end of its registers.
RubyValue* InnerRun::resume(const InnerFrame& frame) {
    function_ = frame.function;
    pc_ = frame.next;
    setBase(frame.base);
    if (function_->inner.program != program_) setProgram(function_->inner.program);
    return frame.base + function_->inner.frameSize;
}

// False when it was the run's outermost function that ended.
bool InnerRun::leave(RubyValue result) {
    if (machine_.frameEnd == entryFrame_) {
        result_ = std::move(result);
        return false;
    }
    for (RubyValue* value = machine_.stack.top(); value > base();) (--value)->dropReference();
    const InnerFrame& frame = popFrame();
    machine_.stack.setTop(resume(frame));
    at(frame.target) = frame.isProtected ? protectedResult(true, std::move(result)) : std::move(result);
    return true;
}

// A register goes with its frame; the result may be made where the caller wants it.
bool InnerRun::leaveWith(const InnerInstruction& i) {
    const RubyValue& value = fetch(i.a, lines().a);
    const bool isOwn = operandSpace(i.a) == OperandSpace::Register && &value == &at(i.a);
    if (machine_.frameEnd == entryFrame_ || machine_.frameEnd[-1].isProtected) return leave(RubyValue(value));
    RubyValue result = isOwn ? std::move(at(i.a)) : value;
    for (RubyValue *place = base(), *end = machine_.stack.top(); place < end; ++place) place->dropReference();
    const InnerFrame& frame = popFrame();
    machine_.stack.setTop(resume(frame));
    at(frame.target) = std::move(result);
    return true;
}

void InnerRun::unwind() {
    machine_.depth -= static_cast<std::uint32_t>(machine_.frameEnd - entryFrame_);
    machine_.frameEnd = entryFrame_;
    releaseAbove(entryTop_);
}

// Goes back to the innermost pcall of this run, which takes the text. What failed lets go of its values
// first: its registers begin among the caller's.
bool InnerRun::recover(std::string_view text) {
    failedLine_ = 0;
    RubyValue* failed = base();
    while (machine_.frameEnd != entryFrame_) {
        const InnerFrame& frame = popFrame();
        if (!frame.isProtected) {
            failed = frame.base;
            continue;
        }
        releaseAbove(failed);
        machine_.stack.setTop(resume(frame));
        refreshGlobals();
        at(frame.target) = protectedResult(false, RubyValue::text(text));
        return true;
    }
    unwind();
    return false;
}

bool InnerRun::hasProtectedCall() const {
    const InnerFrame* frame = machine_.frameEnd;
    while (frame != entryFrame_)
        if ((--frame)->isProtected) return true;
    return false;
}

// Of the exception that is being handled: what it has gathered, and the calls of this run.
kelmora::CallTrail InnerRun::trailUntilHere() const {
    kelmora::CallTrail trail = kelmora::guest::trailOfFailure();
    bool hasRoom = addCall(trail, *function_, {program_, currentLine()});
    for (const InnerFrame* frame = machine_.frameEnd; hasRoom && frame-- != entryFrame_;) {
        const InnerCode& code = frame->function->inner;
        const InnerLines& at =
            code.lines[static_cast<std::size_t>(frame->next - code.instructions.data()) - 1];
        hasRoom = addCall(trail, *frame->function, {code.program, at.op});
    }
    return trail;
}

const RubyValue& InnerRun::fetchUndefined(std::int32_t operand, std::uint32_t line) {
    const std::int32_t index = operandIndex(operand);
    const std::int32_t slot = operandSpace(operand) == OperandSpace::Global
                                  ? index
                                  : function_->inner.localGlobals[static_cast<std::size_t>(index)];
    const RubyValue& value = machine_.globals.value(slot);
    if (!value.isUndefined()) return value;
    failedLine_ = line;
    throw std::runtime_error("undefined variable or function '" + machine_.globals.name(slot) + "'");
}

void InnerRun::slowBinary(const InnerInstruction& i, OpCode op) {
    const RubyValue& a = fetch(i.a, lines().a);
    const RubyValue& b = fetch(i.b, lines().b);
    at(i.target) = applyBinary(op, a, b);
}

bool InnerRun::slowTest(const InnerInstruction& i, OpCode op) {
    const RubyValue& a = fetch(i.a, lines().a);
    const RubyValue& b = fetch(i.b, lines().b);
    return applyBinary(op, a, b).booleanValue();
}

void InnerRun::index(const InnerInstruction& i) {
    const RubyValue& container = at(i.a);
    const RubyValue& position = at(i.b);
    if (container.isArray() && position.isInteger()) {
        const RubyItems& items = container.items();
        const auto place = static_cast<std::uint64_t>(position.integerValue());
        if (place < items.size()) {
            at(i.target) = items[static_cast<std::size_t>(place)];
            return;
        }
    } else if (container.isMap() && position.isString()) {
        const RubyValue* value = container.mapObject().find(position.stringObject());
        at(i.target) = value ? *value : RubyValue();
        return;
    }
    slowIndex(i);
}

void InnerRun::slowIndex(const InnerInstruction& i) {
    const RubyValue& container = fetch(i.a, lines().a);
    const RubyValue& position = fetch(i.b, lines().b);
    at(i.target) = indexValue(container, position);
}

void InnerRun::setIndex(const InnerInstruction& i) {
    const RubyValue& container = at(i.a);
    const RubyValue& position = at(i.b);
    const RubyValue& value = at(i.target);
    if (value.isUndefined()) {
        slowSetIndex(i);
    } else if (container.isArray() && position.isInteger() &&
               static_cast<std::uint64_t>(position.integerValue()) < container.items().size()) {
        container.items()[static_cast<std::size_t>(position.integerValue())] = value;
    } else if (container.isMap() && position.isString()) {
        container.mapObject().set(position.stringObject(), value);
    } else {
        slowSetIndex(i);
    }
}

void InnerRun::slowSetIndex(const InnerInstruction& i) {
    const RubyValue& container = fetch(i.a, lines().a);
    const RubyValue& position = fetch(i.b, lines().b);
    const RubyValue& value = fetch(i.target, lineOfThird());
    RubyValue changed = setIndexValue(container, position, value);
    if (i.op == InnerOp::SetNamedIndex && changed.isString()) at(pc_->target) = std::move(changed);
}

void InnerRun::pushFrame(std::int32_t target, bool isProtected) {
    if (machine_.depth >= maximumCallDepth) throw std::runtime_error(stackOverflow);
    *machine_.frameEnd++ = {function_, pc_, base(), target, isProtected};
    ++machine_.depth;
}

void InnerRun::call(const InnerInstruction& i) {
    RubyValue* callee = base() + i.a;
    if (!callee->isFunction()) throw std::runtime_error("attempted to call a non-function value");
    const FunctionObject& function = callee->functionObject();
    const auto count = static_cast<std::size_t>(i.b);
    switch (function.kind) {
        case FunctionKind::Script:
            callScript(i, function, count);
            return;
        case FunctionKind::Pcall:
            callProtected(i);
            return;
        case FunctionKind::Error:
            if (count == 1) {
                raise(i);
                return;
            }
            break;
        default:
            break;
    }
    RubyValue result = machine_.callValue(*callee, {callee + 1, count}, {program_, lines().op});
    refreshGlobals();
    at(i.target) = std::move(result);
}

void InnerRun::callScript(const InnerInstruction& i, const FunctionObject& function, std::size_t count) {
    const Program& program = *function.program;
    const CompiledFunction& called = *function.target;
    RubyValue* arguments = base() + i.a + 1;
    if (called.parameters.size() != count) {
        checkArgumentCount(called, count);
    } else if (machine_.usesFastForm(called)) {
        machine_.countStep();
        at(i.target) = machine_.executeFastFunction(program, called, {arguments, count});
    } else if (machine_.usesInnerCode(called)) {
        machine_.countStep();
        pushFrame(i.target, false);
        enter(&called, arguments, count);
    } else {
        RubyValue result = machine_.callValue(base()[i.a], {arguments, count}, {program_, lines().op});
        refreshGlobals();
        at(i.target) = std::move(result);
    }
}

// A function with inner code that is called through pcall runs in this loop like any other.
void InnerRun::callProtected(const InnerInstruction& i) {
    RubyValue* callee = base() + i.a + 1;
    const auto count = static_cast<std::size_t>(i.b);
    if (count > 0 && callee->isFunction() && callee->functionObject().kind == FunctionKind::Script) {
        const FunctionObject& function = callee->functionObject();
        const CompiledFunction& called =
            function.program->functions[static_cast<std::size_t>(function.index)];
        if (machine_.usesInnerCode(called) && called.parameters.size() == count - 1) {
            machine_.countStep();
            pushFrame(i.target, true);
            enter(&called, callee + 1, count - 1);
            return;
        }
    }
    RubyValue result = machine_.callValue(callee[-1], {callee, count}, {program_, lines().op});
    refreshGlobals();
    at(i.target) = std::move(result);
}

void InnerRun::raise(const InnerInstruction& i) {
    // Up to a zero byte, as in an exception.
    const std::string text = locatedText(*program_, lines().op, base()[i.a + 1].toString()).c_str();
    if (!hasProtectedCall()) throw kelmora::guest::GuestError(text);
    recover(text);
}

void InnerRun::defineFunction(const InnerInstruction& i) {
    const CompiledFunction& function = program_->functions[static_cast<std::size_t>(i.a)];
    // The program is counted; only this reference to it is plain.
    kelmora::Ref<Program> program(const_cast<Program*>(program_));
    at(i.target) = RubyValue::function(new FunctionObject(function.name, std::move(program), i.a));
}

void InnerRun::makeArray(const InnerInstruction& i) {
    RubyItems items;
    items.reserve(static_cast<std::size_t>(i.b));
    for (std::int32_t item = 0; item < i.b; ++item) items.push_back(std::move(base()[i.a + item]));
    at(i.target) = RubyValue::array(std::move(items));
}

RubyValue InnerRun::dispatch() {
    static const void* const labels[] = {
#define VESPER_RWBY_LABEL(name) &&op##name,
        VESPER_RWBY_INNER_OPS(VESPER_RWBY_LABEL)
#undef VESPER_RWBY_LABEL
    };
    const InnerInstruction* pc = pc_;
    RubyVM::Impl& machine = machine_;

// The instruction at work.
#define I pc[-1]
#define NEXT                                          \
    do {                                              \
        ++pc;                                         \
        goto* labels[static_cast<std::size_t>(I.op)]; \
    } while (false)
// What may fail or call has to know its place.
#define SAVE (pc_ = pc)
#define COUNT_STEP           \
    do {                     \
        SAVE;                \
        machine.countStep(); \
    } while (false)

    NEXT;

opMove : {
    const RubyValue& value = at(I.a);
    if (value.isUndefined()) [[unlikely]] {
        SAVE;
        at(I.target) = fetchUndefined(I.a, lines().a);
    } else {
        at(I.target) = value;
    }
    NEXT;
}

#define ARITHMETIC(name, wrapped)                                                 \
    op##name : {                                                                  \
        const RubyValue& a = at(I.a);                                             \
        const RubyValue& b = at(I.b);                                             \
        if (a.isInteger() && b.isInteger()) [[likely]] {                          \
            at(I.target).setInteger(wrapped(a.integerValue(), b.integerValue())); \
            NEXT;                                                                 \
        }                                                                         \
        SAVE;                                                                     \
        slowBinary(I, OpCode::name);                                              \
        NEXT;                                                                     \
    }
    ARITHMETIC(Add, wrappedAdd)
    ARITHMETIC(Subtract, wrappedSubtract)
    ARITHMETIC(Multiply, wrappedMultiply)
#undef ARITHMETIC
opModulo : {
    const RubyValue& a = at(I.a);
    const RubyValue& b = at(I.b);
    if (a.isInteger() && b.isInteger() && b.integerValue() != 0) [[likely]] {
        at(I.target).setInteger(integerModulo(a.integerValue(), b.integerValue()));
        NEXT;
    }
    SAVE;
    slowBinary(I, OpCode::Modulo);
    NEXT;
}
opDivide:
    SAVE;
    slowBinary(I, OpCode::Divide);
    NEXT;

#define COMPARISON(name)                            \
    op##name : SAVE;                                \
    at(I.target).setBoolean(test<OpCode::name>(I)); \
    NEXT;                                           \
    opUnless##name : SAVE;                          \
    if (!test<OpCode::name>(I)) pc += I.target;     \
    NEXT;                                           \
    opLoop##name : COUNT_STEP;                      \
    if (test<OpCode::name>(I)) pc += I.target;      \
    NEXT;
    COMPARISON(Equal)
    COMPARISON(NotEqual)
    COMPARISON(Less)
    COMPARISON(LessEqual)
    COMPARISON(Greater)
    COMPARISON(GreaterEqual)
    COMPARISON(And)
    COMPARISON(Or)
#undef COMPARISON

opNegate:
    SAVE;
    at(I.target) = negate(fetch(I.a, lines().a));
    NEXT;
opNot:
    SAVE;
    at(I.target).setBoolean(!fetch(I.a, lines().a).isTruthy());
    NEXT;
opJumpIfFalse:
    SAVE;
    if (!fetch(I.a, lines().a).isTruthy()) pc += I.target;
    NEXT;
opJumpIfTrue:
    SAVE;
    if (fetch(I.a, lines().a).isTruthy()) pc += I.target;
    NEXT;
opJump:
    pc += I.target;
    NEXT;
opLoop:
    COUNT_STEP;
    pc += I.target;
    NEXT;

opCall : {
    RubyValue* const callee = base() + I.a;
    SAVE;
    if (callee->isFunction()) [[likely]] {
        const FunctionObject& function = callee->functionObject();
        if (function.kind == FunctionKind::Script && function.target->innerArguments == I.b) {
            const CompiledFunction& called = *function.target;
            if (called.inner.program == program_ && machine.depth < maximumCallDepth &&
                machine.stack.tryReserve(callee + 1, called.inner.frameSize)) [[likely]] {
                machine.countStep();
                *machine.frameEnd++ = {function_, pc, base(), I.target, false};
                ++machine.depth;
                const std::size_t locals = called.localNames.size();
                for (std::size_t i = static_cast<std::size_t>(I.b); i < locals; ++i)
                    callee[1 + i].setUndefined();
                function_ = &called;
                setBase(callee + 1);
                pc = called.inner.instructions.data();
                NEXT;
            }
        }
    }
    call(I);
    pc = pc_;
    NEXT;
}
opDefineFunction:
    SAVE;
    defineFunction(I);
    NEXT;
opReturn:
    SAVE;
    if (!leaveWith(I)) return std::move(result_);
    pc = pc_;
    NEXT;
opReturnNil:
    if (!leave(RubyValue())) return std::move(result_);
    pc = pc_;
    NEXT;
opMakeArray:
    SAVE;
    makeArray(I);
    NEXT;
opIndex:
    SAVE;
    index(I);
    NEXT;
opSetIndex:
opSetNamedIndex:
    SAVE;
    setIndex(I);
    ++pc;
    NEXT;
#undef I
#undef NEXT
#undef SAVE
#undef COUNT_STEP
}

}  // namespace

RubyValue RubyVM::Impl::executeInner(const kelmora::Ref<Program>& program, const CompiledFunction& function,
                                     Arguments arguments) {
    const StackWindow window(stack, static_cast<std::size_t>(function.inner.frameSize));
    std::copy(arguments.begin(), arguments.end(), window.values());
    return InnerRun(*this, *program, function, window.values()).run();
}

}  // namespace vesper::ruby
