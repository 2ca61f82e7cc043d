#include "rwby/machine.h"
#include "rwby/operations.h"

namespace vesper::ruby {
namespace {

[[noreturn]] void fail(const char* message) {
    throw std::runtime_error(message);
}

// The instructions of one call, on a stack of values as they stand in the file.
class PlainRun {
public:
    PlainRun(RubyVM::Impl& machine, const kelmora::Ref<Program>& program, const CompiledFunction& function,
             Arguments arguments)
        : machine_(machine),
          programRef_(program),
          program_(*program),
          function_(function),
          locals_(function.localNames.size(), RubyValue::undefined()) {
        for (std::size_t i = 0; i < arguments.size(); ++i)
            locals_[static_cast<std::size_t>(function.parameterSlots[i])] = arguments[i];
    }

    RubyValue run() {
        try {
            while (pc_ < function_.instructions.size() && !isDone_) {
                const Instruction& instruction = function_.instructions[pc_];
                line_ = instruction.line;
                ++pc_;
                execute(instruction, pc_ - 1);
            }
            return std::move(result_);
        } catch (const kelmora::guest::TracedGuestError& error) {
            if (error.trail()) addCall(*error.trail(), function_, {&program_, line_});
            throw;
        } catch (const std::exception&) {
            throwFromCall(function_, {&program_, line_});
        }
    }

private:
    void execute(const Instruction& instruction, std::size_t at) {
        switch (instruction.op) {
            case OpCode::PushConstant:
                stack_.push_back(constant(instruction.a));
                break;
            case OpCode::LoadName:
                loadName(instruction, at);
                break;
            case OpCode::StoreName:
                checkName(instruction.a);
                if (stack_.empty()) fail("assignment requires a value");
                storeName(at, pop());
                break;
            case OpCode::Pop:
                pop();
                break;
            case OpCode::Negate:
                stack_.push_back(negate(pop()));
                break;
            case OpCode::Not:
                stack_.push_back(RubyValue::boolean(!pop().isTruthy()));
                break;
            case OpCode::Jump:
                jump(instruction.a, "jump target is out of range");
                break;
            case OpCode::JumpIfFalse:
                if (!pop().isTruthy()) jump(instruction.a, "conditional jump target is out of range");
                break;
            case OpCode::Call:
                call(instruction.a);
                break;
            case OpCode::DefineFunction:
                define(instruction, at);
                break;
            case OpCode::Return:
                result_ = stack_.empty() ? RubyValue() : pop();
                isDone_ = true;
                break;
            case OpCode::MakeArray:
                makeArray(instruction.a);
                break;
            case OpCode::Index: {
                const RubyValue index = pop();
                const RubyValue container = pop();
                stack_.push_back(indexValue(container, index));
                break;
            }
            case OpCode::SetIndex:
                setIndex(instruction, at);
                break;
            default:
                if (!isBinary(instruction.op)) fail("unknown opcode");
                const RubyValue right = pop();
                const RubyValue left = pop();
                stack_.push_back(applyBinary(instruction.op, left, right));
        }
    }

    RubyValue pop() {
        if (stack_.empty()) fail("stack underflow");
        RubyValue value = std::move(stack_.back());
        stack_.pop_back();
        return value;
    }
    const RubyValue& constant(std::int32_t index) const {
        if (index < 0 || static_cast<std::size_t>(index) >= program_.constants.size())
            fail("constant index is out of range");
        return program_.constants[static_cast<std::size_t>(index)];
    }
    void checkName(std::int32_t index) const {
        if (!constant(index).isString()) fail("global name constant is invalid");
    }

    RubyValue* local(std::size_t at) {
        const std::int32_t slot = function_.localSlots[at];
        if (slot < 0) return nullptr;
        if (static_cast<std::size_t>(slot) >= locals_.size()) fail("local slot is out of range");
        return &locals_[static_cast<std::size_t>(slot)];
    }
    void loadName(const Instruction& instruction, std::size_t at) {
        checkName(instruction.a);
        if (const RubyValue* value = local(at); value && !value->isUndefined()) {
            stack_.push_back(*value);
            return;
        }
        const std::int32_t slot = function_.globalSlots[at];
        const RubyValue& global = machine_.globals.value(slot);
        if (global.isUndefined())
            throw std::runtime_error("undefined variable or function '" + machine_.globals.name(slot) + "'");
        stack_.push_back(global);
    }
    void storeName(std::size_t at, RubyValue value) {
        if (RubyValue* place = local(at)) {
            *place = std::move(value);
        } else {
            machine_.globals.setGlobalSlotValue(function_.globalSlots[at], std::move(value));
        }
    }

    void jump(std::int32_t target, const char* message) {
        if (target < 0 || static_cast<std::size_t>(target) > function_.instructions.size()) fail(message);
        if (static_cast<std::size_t>(target) < pc_) machine_.countStep();
        pc_ = static_cast<std::size_t>(target);
    }

    void call(std::int32_t count) {
        if (count < 0) fail("argument count is invalid");
        const auto arguments = static_cast<std::size_t>(count);
        if (stack_.size() < arguments + 1) fail("call stack is incomplete");
        const std::size_t callee = stack_.size() - arguments - 1;
        RubyValue result =
            machine_.callValue(stack_[callee], {stack_.data() + callee + 1, arguments}, {&program_, line_});
        stack_.resize(callee);
        stack_.push_back(std::move(result));
    }
    void define(const Instruction& instruction, std::size_t at) {
        checkName(instruction.a);
        if (instruction.b < 0 || static_cast<std::size_t>(instruction.b) >= program_.functions.size())
            fail("function index is out of range");
        const std::string& name = program_.functions[static_cast<std::size_t>(instruction.b)].name;
        machine_.globals.setGlobalSlotValue(
            function_.globalSlots[at],
            RubyValue::function(new FunctionObject(name, programRef_, instruction.b)));
    }
    void makeArray(std::int32_t count) {
        if (count < 0) fail("array element count is invalid");
        if (static_cast<std::size_t>(count) > stack_.size()) fail("array literal is missing values");
        RubyItems items(stack_.end() - count, stack_.end());
        stack_.resize(stack_.size() - items.size());
        stack_.push_back(RubyValue::array(std::move(items)));
    }
    void setIndex(const Instruction& instruction, std::size_t at) {
        if (instruction.a < 0) fail("constant index is out of range");
        if (instruction.a > 0) checkName(instruction.a - 1);
        const RubyValue value = pop();
        const RubyValue index = pop();
        const RubyValue container = pop();
        RubyValue changed = setIndexValue(container, index, value);
        if (!changed.isString() || instruction.a == 0) return;
        // A function changes no global.
        if (function_.localSlots[at] >= 0 || &function_ == program_.functions.data())
            storeName(at, std::move(changed));
    }

    RubyVM::Impl& machine_;
    const kelmora::Ref<Program>& programRef_;
    const Program& program_;
    const CompiledFunction& function_;
    RubyItems locals_;
    RubyItems stack_;
    std::size_t pc_ = 0;
    std::uint32_t line_ = 0;
    RubyValue result_;
    bool isDone_ = false;
};

}  // namespace

RubyValue RubyVM::Impl::executePlain(const kelmora::Ref<Program>& program, const CompiledFunction& function,
                                     Arguments arguments) {
    return PlainRun(*this, program, function, arguments).run();
}

}  // namespace vesper::ruby
