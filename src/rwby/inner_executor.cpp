#include <new>

#include "rwby/machine.h"
#include "rwby/map_object.h"
#include "rwby/operations.h"

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

// The opcode of an instruction's inner form, by its distance from the first of its group.
OpCode operatorAt(InnerOp op, InnerOp first, OpCode firstCode) {
    return static_cast<OpCode>(static_cast<int>(op) - static_cast<int>(first) + static_cast<int>(firstCode));
}

// Inner code from the call of one function to its return. Calls of other functions with inner code stay in
// the same loop; their registers begin where the caller put the arguments.
class InnerRun {
public:
    InnerRun(RubyVM::Impl& machine, const Program& program, const CompiledFunction& function, RubyValue* base)
        : machine_(machine), entryFrames_(machine.frames.size()) {
        enter(&program, &function, base, function.parameters.size());
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
                if (!recover(text)) throw kelmora::guest::GuestError(text);
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
    void setSpaces() {
        spaces_[0] = reinterpret_cast<std::uintptr_t>(base_);
        spaces_[1] = reinterpret_cast<std::uintptr_t>(program_->constants.data()) - 1;
        refreshGlobals();
    }
    void refreshGlobals() { spaces_[2] = reinterpret_cast<std::uintptr_t>(machine_.globals.values()) - 2; }
    // The operand's value, which may be of a global that has the name of an unassigned local.
    const RubyValue& fetch(std::int32_t operand, std::uint32_t line) {
        const RubyValue& value = at(operand);
        return value.isUndefined() ? fetchUndefined(operand, line) : value;
    }
    const RubyValue& fetchUndefined(std::int32_t operand, std::uint32_t line);
    std::uint32_t lineOfThird() const { return function_->inner.lines[position() + 1].op; }

    void enter(const Program* program, const CompiledFunction* function, RubyValue* base, std::size_t count);
    InnerFrame popFrame();
    RubyValue* resume(const InnerFrame& frame);
    void leave(RubyValue result);
    void releaseAbove(RubyValue* top);
    void unwind();
    bool recover(std::string_view text);

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
    std::size_t entryFrames_;
    const Program* program_ = nullptr;
    const CompiledFunction* function_ = nullptr;
    const InnerInstruction* pc_ = nullptr;
    RubyValue* base_ = nullptr;
    std::uintptr_t spaces_[4] = {};  // by OperandSpace
    RubyValue* entryTop_ = nullptr;
    std::uint32_t failedLine_ = 0;  // where it is not the instruction's own
    RubyValue result_;
    bool isDone_ = false;
};

void InnerRun::enter(const Program* program, const CompiledFunction* function, RubyValue* base,
                     std::size_t count) {
    machine_.stack.reserve(base, static_cast<std::size_t>(function->inner.frameSize));
    const std::size_t locals = function->localNames.size();
    for (std::size_t i = count; i < locals; ++i) base[i].setUndefined();
    program_ = program;
    function_ = function;
    base_ = base;
    pc_ = function->inner.instructions.data();
    setSpaces();
}

void InnerRun::releaseAbove(RubyValue* top) {
    for (RubyValue* value = machine_.stack.top(); value > top;) (--value)->dropReference();
    machine_.stack.setTop(top);
}

InnerFrame InnerRun::popFrame() {
    const InnerFrame frame = machine_.frames.back();
    machine_.frames.pop_back();
    --machine_.depth;
    return frame;
}

// Goes on in a caller: the end of its registers.
RubyValue* InnerRun::resume(const InnerFrame& frame) {
    program_ = frame.program;
    function_ = frame.function;
    pc_ = frame.next;
    base_ = frame.base;
    setSpaces();
    return base_ + function_->inner.frameSize;
}

void InnerRun::leave(RubyValue result) {
    if (machine_.frames.size() == entryFrames_) {
        result_ = std::move(result);
        isDone_ = true;
        return;
    }
    for (RubyValue* value = machine_.stack.top(); value > base_;) (--value)->dropReference();
    const InnerFrame frame = popFrame();
    machine_.stack.setTop(resume(frame));
    at(frame.target) = frame.isProtected ? protectedResult(true, std::move(result)) : std::move(result);
}

void InnerRun::unwind() {
    machine_.depth -= static_cast<std::uint32_t>(machine_.frames.size() - entryFrames_);
    machine_.frames.resize(entryFrames_);
    releaseAbove(entryTop_);
}

// Goes back to the innermost pcall of this run, which takes the text.
bool InnerRun::recover(std::string_view text) {
    failedLine_ = 0;
    while (machine_.frames.size() > entryFrames_) {
        const InnerFrame frame = popFrame();
        if (!frame.isProtected) continue;
        releaseAbove(resume(frame));
        at(frame.target) = protectedResult(false, RubyValue::text(text));
        return true;
    }
    unwind();
    return false;
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
        const std::vector<RubyValue>& items = container.items();
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
    machine_.frames.push_back({program_, function_, pc_, base_, target, isProtected});
    ++machine_.depth;
}

void InnerRun::call(const InnerInstruction& i) {
    RubyValue* callee = base_ + i.a;
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
    RubyValue* arguments = base_ + i.a + 1;
    if (called.parameters.size() != count) {
        checkArgumentCount(called, count);
    } else if (machine_.usesFastForm(called)) {
        machine_.countStep();
        at(i.target) = machine_.executeFastFunction(program, called, {arguments, count});
    } else if (machine_.usesInnerCode(called)) {
        machine_.countStep();
        pushFrame(i.target, false);
        enter(&program, &called, arguments, count);
    } else {
        RubyValue result = machine_.callValue(base_[i.a], {arguments, count}, {program_, lines().op});
        refreshGlobals();
        at(i.target) = std::move(result);
    }
}

// A function with inner code that is called through pcall runs in this loop like any other.
void InnerRun::callProtected(const InnerInstruction& i) {
    RubyValue* callee = base_ + i.a + 1;
    const auto count = static_cast<std::size_t>(i.b);
    if (count > 0 && callee->isFunction() && callee->functionObject().kind == FunctionKind::Script) {
        const FunctionObject& function = callee->functionObject();
        const CompiledFunction& called =
            function.program->functions[static_cast<std::size_t>(function.index)];
        if (machine_.usesInnerCode(called) && called.parameters.size() == count - 1) {
            machine_.countStep();
            pushFrame(i.target, true);
            enter(function.program.get(), &called, callee + 1, count - 1);
            return;
        }
    }
    RubyValue result = machine_.callValue(callee[-1], {callee, count}, {program_, lines().op});
    refreshGlobals();
    at(i.target) = std::move(result);
}

void InnerRun::raise(const InnerInstruction& i) {
    // Up to a zero byte, as in an exception.
    const std::string text = locatedText(*program_, lines().op, base_[i.a + 1].toString()).c_str();
    if (!recover(text)) throw kelmora::guest::GuestError(text);
}

void InnerRun::defineFunction(const InnerInstruction& i) {
    const CompiledFunction& function = program_->functions[static_cast<std::size_t>(i.a)];
    // The program is counted; only this reference to it is plain.
    kelmora::Ref<Program> program(const_cast<Program*>(program_));
    at(i.target) = RubyValue::function(new FunctionObject(function.name, std::move(program), i.a));
}

void InnerRun::makeArray(const InnerInstruction& i) {
    std::vector<RubyValue> items;
    items.reserve(static_cast<std::size_t>(i.b));
    for (std::int32_t item = 0; item < i.b; ++item) items.push_back(std::move(base_[i.a + item]));
    at(i.target) = RubyValue::array(std::move(items));
}

RubyValue InnerRun::dispatch() {
    const InnerInstruction* pc = pc_;
    const InnerInstruction* code = function_->inner.instructions.data();
    for (;;) {
        const InnerInstruction& i = *pc++;
        pc_ = pc;
        switch (i.op) {
            case InnerOp::Move: {
                const RubyValue& value = at(i.a);
                at(i.target) = value.isUndefined() ? fetchUndefined(i.a, lines().a) : value;
                break;
            }
            case InnerOp::Add:
                if (const RubyValue& a = at(i.a), &b = at(i.b); a.isInteger() && b.isInteger()) {
                    at(i.target).setInteger(wrappedAdd(a.integerValue(), b.integerValue()));
                } else {
                    slowBinary(i, OpCode::Add);
                }
                break;
            case InnerOp::Subtract:
                if (const RubyValue& a = at(i.a), &b = at(i.b); a.isInteger() && b.isInteger()) {
                    at(i.target).setInteger(wrappedSubtract(a.integerValue(), b.integerValue()));
                } else {
                    slowBinary(i, OpCode::Subtract);
                }
                break;
            case InnerOp::Multiply:
                if (const RubyValue& a = at(i.a), &b = at(i.b); a.isInteger() && b.isInteger()) {
                    at(i.target).setInteger(wrappedMultiply(a.integerValue(), b.integerValue()));
                } else {
                    slowBinary(i, OpCode::Multiply);
                }
                break;
            case InnerOp::Modulo:
                if (const RubyValue& a = at(i.a), &b = at(i.b);
                    a.isInteger() && b.isInteger() && b.integerValue() != 0) {
                    at(i.target).setInteger(integerModulo(a.integerValue(), b.integerValue()));
                } else {
                    slowBinary(i, OpCode::Modulo);
                }
                break;
            case InnerOp::Divide:
                slowBinary(i, OpCode::Divide);
                break;
            case InnerOp::Equal:
                at(i.target).setBoolean(test<OpCode::Equal>(i));
                break;
            case InnerOp::NotEqual:
                at(i.target).setBoolean(test<OpCode::NotEqual>(i));
                break;
            case InnerOp::Less:
            case InnerOp::LessEqual:
            case InnerOp::Greater:
            case InnerOp::GreaterEqual:
                slowBinary(i, operatorAt(i.op, InnerOp::Less, OpCode::Less));
                break;
            case InnerOp::And:
                at(i.target).setBoolean(test<OpCode::And>(i));
                break;
            case InnerOp::Or:
                at(i.target).setBoolean(test<OpCode::Or>(i));
                break;
            case InnerOp::UnlessEqual:
                if (!test<OpCode::Equal>(i)) pc = code + i.target;
                break;
            case InnerOp::UnlessNotEqual:
                if (!test<OpCode::NotEqual>(i)) pc = code + i.target;
                break;
            case InnerOp::UnlessLess:
                if (!test<OpCode::Less>(i)) pc = code + i.target;
                break;
            case InnerOp::UnlessLessEqual:
                if (!test<OpCode::LessEqual>(i)) pc = code + i.target;
                break;
            case InnerOp::UnlessGreater:
                if (!test<OpCode::Greater>(i)) pc = code + i.target;
                break;
            case InnerOp::UnlessGreaterEqual:
                if (!test<OpCode::GreaterEqual>(i)) pc = code + i.target;
                break;
            case InnerOp::UnlessAnd:
                if (!test<OpCode::And>(i)) pc = code + i.target;
                break;
            case InnerOp::UnlessOr:
                if (!test<OpCode::Or>(i)) pc = code + i.target;
                break;
            case InnerOp::LoopEqual:
                machine_.countStep();
                if (test<OpCode::Equal>(i)) pc = code + i.target;
                break;
            case InnerOp::LoopNotEqual:
                machine_.countStep();
                if (test<OpCode::NotEqual>(i)) pc = code + i.target;
                break;
            case InnerOp::LoopLess:
                machine_.countStep();
                if (test<OpCode::Less>(i)) pc = code + i.target;
                break;
            case InnerOp::LoopLessEqual:
                machine_.countStep();
                if (test<OpCode::LessEqual>(i)) pc = code + i.target;
                break;
            case InnerOp::LoopGreater:
                machine_.countStep();
                if (test<OpCode::Greater>(i)) pc = code + i.target;
                break;
            case InnerOp::LoopGreaterEqual:
                machine_.countStep();
                if (test<OpCode::GreaterEqual>(i)) pc = code + i.target;
                break;
            case InnerOp::LoopAnd:
                machine_.countStep();
                if (test<OpCode::And>(i)) pc = code + i.target;
                break;
            case InnerOp::LoopOr:
                machine_.countStep();
                if (test<OpCode::Or>(i)) pc = code + i.target;
                break;
            case InnerOp::Negate:
                at(i.target) = negate(fetch(i.a, lines().a));
                break;
            case InnerOp::Not:
                at(i.target) = RubyValue::boolean(!fetch(i.a, lines().a).isTruthy());
                break;
            case InnerOp::JumpIfFalse:
                if (!fetch(i.a, lines().a).isTruthy()) pc = code + i.target;
                break;
            case InnerOp::JumpIfTrue:
                if (fetch(i.a, lines().a).isTruthy()) pc = code + i.target;
                break;
            case InnerOp::Jump:
                pc = code + i.target;
                break;
            case InnerOp::Loop:
                machine_.countStep();
                pc = code + i.target;
                break;
            case InnerOp::Call:
                call(i);
                pc = pc_;
                code = function_->inner.instructions.data();
                break;
            case InnerOp::DefineFunction:
                defineFunction(i);
                break;
            case InnerOp::Return:
                leave(RubyValue(fetch(i.a, lines().a)));
                if (isDone_) return std::move(result_);
                pc = pc_;
                code = function_->inner.instructions.data();
                break;
            case InnerOp::ReturnNil:
                leave(RubyValue());
                if (isDone_) return std::move(result_);
                pc = pc_;
                code = function_->inner.instructions.data();
                break;
            case InnerOp::MakeArray:
                makeArray(i);
                break;
            case InnerOp::Index:
                index(i);
                break;
            case InnerOp::SetIndex:
            case InnerOp::SetNamedIndex:
                setIndex(i);
                ++pc;
                break;
        }
    }
}

}  // namespace

RubyValue RubyVM::Impl::executeInner(const kelmora::Ref<Program>& program, const CompiledFunction& function,
                                     Arguments arguments) {
    const StackWindow window(stack, static_cast<std::size_t>(function.inner.frameSize));
    std::copy(arguments.begin(), arguments.end(), window.values());
    return InnerRun(*this, *program, function, window.values()).run();
}

}  // namespace vesper::ruby
