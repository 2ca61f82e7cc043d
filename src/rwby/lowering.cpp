#include "rwby/lowering.h"

#include <algorithm>

#include "rwby/globals.h"
#include "rwby/program.h"

namespace vesper::ruby {
namespace {

// Beyond it no operand would reach.
constexpr std::int32_t maximumRegisters = maximumOperandIndex / 2;

InnerOp innerBinary(OpCode op) {
    if (op <= OpCode::Modulo)
        return static_cast<InnerOp>(static_cast<int>(InnerOp::Add) + static_cast<int>(op) -
                                    static_cast<int>(OpCode::Add));
    return static_cast<InnerOp>(static_cast<int>(InnerOp::Equal) + static_cast<int>(op) -
                                static_cast<int>(OpCode::Equal));
}

bool inGroup(InnerOp op, InnerOp first, InnerOp last) {
    return op >= first && op <= last;
}

InnerOp movedGroup(InnerOp op, InnerOp from, InnerOp to) {
    return static_cast<InnerOp>(static_cast<int>(op) - static_cast<int>(from) + static_cast<int>(to));
}

bool producesValue(InnerOp op) {
    return op <= InnerOp::Or || op == InnerOp::Negate || op == InnerOp::Not || op == InnerOp::Call ||
           op == InnerOp::MakeArray || op == InnerOp::Index;
}

// Walks the instructions with a stack of where each value is. A loaded variable or constant stays where it is
// until it is used, as long as nothing can tell: one that may be undefined is fetched before anything else
// can fail, a global before anything can change it, everything before a jump.
class Lowering {
public:
    Lowering(const Program& program, const CompiledFunction& function, Globals& globals)
        : program_(program), function_(function), code_(function.instructions), globals_(globals) {}

    InnerCode run() {
        if (!prepare()) return {};
        for (std::size_t i = 0; i < code_.size(); ++i) {
            if (isLabel_[i]) enterLabel(i);
            innerAt_[i] = static_cast<std::int32_t>(out_.instructions.size());
            if (reachable_ && !lower(i)) return {};
            if (maximumDepth_ > maximumRegisters) return {};
        }
        if (isLabel_[code_.size()]) enterLabel(code_.size());
        innerAt_[code_.size()] = static_cast<std::int32_t>(out_.instructions.size());
        // An image may end behind a load, which can fail though nothing uses it.
        if (reachable_) settleBelow(0);
        emit(InnerOp::ReturnNil, 0);
        if (hasFailed_) return {};
        for (const auto& [at, target] : patches_)
            out_.instructions[static_cast<std::size_t>(at)].target = innerAt_[target] - at - 1;
        out_.program = &program_;
        out_.frameSize = localCount_ + static_cast<std::int32_t>(maximumDepth_);
        return std::move(out_);
    }

private:
    struct Entry {
        std::int32_t operand;
        std::uint32_t line;
    };

    bool prepare() {
        if (function_.localNames.size() > static_cast<std::size_t>(maximumRegisters) ||
            program_.constants.size() > static_cast<std::size_t>(maximumOperandIndex))
            return false;
        localCount_ = static_cast<std::int32_t>(function_.localNames.size());
        for (const std::string& name : function_.localNames)
            out_.localGlobals.push_back(globals_.ensureGlobalSlot(name));
        for (std::size_t i = 0; i < function_.parameters.size(); ++i)
            define(static_cast<std::int32_t>(i), definite_);
        isLabel_.assign(code_.size() + 1, false);
        innerAt_.assign(code_.size() + 1, 0);
        depthAt_.assign(code_.size() + 1, -1);
        definiteAt_.assign(code_.size() + 1, 0);
        for (const Instruction& instruction : code_) {
            if (instruction.op != OpCode::Jump && instruction.op != OpCode::JumpIfFalse) continue;
            if (instruction.a < 0 || static_cast<std::size_t>(instruction.a) > code_.size()) return false;
            isLabel_[static_cast<std::size_t>(instruction.a)] = true;
        }
        return true;
    }

    // Locals that hold a value on every way here; the first 64 are watched.
    static void define(std::int32_t slot, std::uint64_t& definite) {
        if (slot < 64) definite |= std::uint64_t{1} << slot;
    }
    bool isDefinite(std::int32_t slot) const { return slot < 64 && (definite_ >> slot & 1) != 0; }
    // Fetching it cannot fail, and nothing but this function's stores can change it.
    bool isSettled(const Entry& entry) const {
        const std::int32_t index = operandIndex(entry.operand);
        switch (operandSpace(entry.operand)) {
            case OperandSpace::Register:
                return index >= localCount_ || isDefinite(index);
            case OperandSpace::Constant:
                return true;
            default:
                return false;
        }
    }

    std::int32_t temporary(std::size_t depth) const {
        return makeOperand(OperandSpace::Register, localCount_ + static_cast<std::int32_t>(depth));
    }
    void emit(InnerOp op, std::uint32_t line, std::int32_t target = 0, const Entry& a = {0, 0},
              const Entry& b = {0, 0}) {
        if (out_.instructions.size() >= INT32_MAX) hasFailed_ = true;
        out_.instructions.push_back({op, target, a.operand, b.operand});
        out_.lines.push_back({line, a.line, b.line});
    }

    void push(std::int32_t operand, std::uint32_t line) {
        stack_.push_back({operand, line});
        maximumDepth_ = std::max(maximumDepth_, stack_.size());
    }
    void pushResult(std::uint32_t line) { push(temporary(stack_.size()), line); }
    Entry pop() {
        const Entry entry = stack_.back();
        stack_.pop_back();
        settled_ = std::min(settled_, stack_.size());
        materialised_ = std::min(materialised_, stack_.size());
        return entry;
    }
    void materialise(std::size_t depth) {
        Entry& entry = stack_[depth];
        if (entry.operand == temporary(depth)) return;
        emit(InnerOp::Move, entry.line, temporary(depth), entry);
        entry.operand = temporary(depth);
    }
    // The entries but the `count` last ones: what may fail or change is fetched.
    void settleBelow(std::size_t count) {
        for (; settled_ + count < stack_.size(); ++settled_)
            if (!isSettled(stack_[settled_])) materialise(settled_);
    }
    void materialiseAll() {
        for (; materialised_ < stack_.size(); ++materialised_) materialise(materialised_);
        settled_ = stack_.size();
    }

    void enterLabel(std::size_t at) {
        if (reachable_) {
            materialiseAll();
            reach(at, at);
        }
        reachable_ = depthAt_[at] >= 0;
        if (!reachable_) return;
        stack_.clear();
        for (std::int32_t i = 0; i < depthAt_[at]; ++i) push(temporary(stack_.size()), 0);
        settled_ = materialised_ = stack_.size();
        definite_ = definiteAt_[at];
        barrier_ = out_.instructions.size();
    }
    // The way from instruction `from` goes on at the label.
    void reach(std::size_t label, std::size_t from) {
        const auto depth = static_cast<std::int32_t>(stack_.size());
        if (label < from) {
            const bool fits = depthAt_[label] == depth && (definiteAt_[label] & ~definite_) == 0;
            hasFailed_ = hasFailed_ || !fits;
        } else if (depthAt_[label] < 0) {
            depthAt_[label] = depth;
            definiteAt_[label] = definite_;
        } else {
            hasFailed_ = hasFailed_ || depthAt_[label] != depth;
            definiteAt_[label] &= definite_;
        }
    }

    // The last instruction, when it made this temporary and nothing else can have come here.
    InnerInstruction* producerOf(const Entry& entry) {
        if (out_.instructions.size() <= barrier_) return nullptr;
        InnerInstruction& last = out_.instructions.back();
        const bool isTemporary = operandSpace(entry.operand) == OperandSpace::Register &&
                                 operandIndex(entry.operand) >= localCount_;
        return isTemporary && producesValue(last.op) && last.target == entry.operand ? &last : nullptr;
    }

    // Whether a loop's head is one comparison that leaves to `exit`: then its end can compare too.
    bool isTestOfLoop(std::size_t head, std::size_t exit) const {
        if (head >= out_.instructions.size() ||
            !inGroup(out_.instructions[head].op, InnerOp::UnlessEqual, InnerOp::UnlessOr))
            return false;
        return std::binary_search(patches_.begin(), patches_.end(),
                                  std::pair{static_cast<std::int32_t>(head), exit});
    }

    bool lower(std::size_t at);
    bool lowerCall(const Instruction& instruction);
    bool lowerArray(const Instruction& instruction);
    bool lowerStore(std::size_t at);
    bool lowerSetIndex(std::size_t at);
    bool lowerDefinition(std::size_t at);
    bool lowerBranch(std::size_t at);
    bool lowerJump(std::size_t at);
    bool lowerReturn(const Instruction& instruction);
    bool lowerOperator(const Instruction& instruction);

    const Program& program_;
    const CompiledFunction& function_;
    const std::vector<Instruction>& code_;
    Globals& globals_;
    InnerCode out_;
    std::int32_t localCount_ = 0;
    std::vector<bool> isLabel_;
    std::vector<std::int32_t> innerAt_;
    std::vector<std::int32_t> depthAt_;  // of the stack at a label, -1 while unknown
    std::vector<std::uint64_t> definiteAt_;
    std::vector<std::pair<std::int32_t, std::size_t>> patches_;
    std::vector<Entry> stack_;
    std::size_t settled_ = 0;       // entries below need no more settling
    std::size_t materialised_ = 0;  // and these are in their registers
    std::size_t maximumDepth_ = 0;
    std::uint64_t definite_ = 0;
    std::size_t barrier_ = 0;  // instructions before it may be reached another way
    bool reachable_ = true;
    bool hasFailed_ = false;
};

bool Lowering::lower(std::size_t at) {
    const Instruction& instruction = code_[at];
    switch (instruction.op) {
        case OpCode::PushConstant:
            if (instruction.a < 0 || static_cast<std::size_t>(instruction.a) >= program_.constants.size())
                return false;
            push(makeOperand(OperandSpace::Constant, instruction.a), instruction.line);
            return true;
        case OpCode::LoadName: {
            const std::int32_t local = function_.localSlots[at];
            if (function_.globalSlots[at] < 0) return false;
            push(local >= 0 ? makeOperand(OperandSpace::Register, local)
                            : makeOperand(OperandSpace::Global, function_.globalSlots[at]),
                 instruction.line);
            return true;
        }
        case OpCode::StoreName:
            return lowerStore(at);
        case OpCode::Pop:
            if (stack_.empty()) return false;
            if (!isSettled(stack_.back())) {
                settleBelow(1);
                materialise(stack_.size() - 1);
            }
            pop();
            return true;
        case OpCode::Jump:
            return lowerJump(at);
        case OpCode::JumpIfFalse:
            return lowerBranch(at);
        case OpCode::Call:
            return lowerCall(instruction);
        case OpCode::DefineFunction:
            return lowerDefinition(at);
        case OpCode::Return:
            return lowerReturn(instruction);
        case OpCode::MakeArray:
            return lowerArray(instruction);
        case OpCode::SetIndex:
            return lowerSetIndex(at);
        default:
            return lowerOperator(instruction);
    }
}

bool Lowering::lowerOperator(const Instruction& instruction) {
    const OpCode op = instruction.op;
    if (op == OpCode::Negate || op == OpCode::Not) {
        if (stack_.empty()) return false;
        settleBelow(1);
        const Entry value = pop();
        emit(op == OpCode::Not ? InnerOp::Not : InnerOp::Negate, instruction.line, temporary(stack_.size()),
             value);
    } else if (isBinary(op) || op == OpCode::Index) {
        if (stack_.size() < 2) return false;
        settleBelow(2);
        const Entry right = pop();
        const Entry left = pop();
        emit(op == OpCode::Index ? InnerOp::Index : innerBinary(op), instruction.line,
             temporary(stack_.size()), left, right);
    } else {
        return false;
    }
    pushResult(instruction.line);
    return true;
}

bool Lowering::lowerStore(std::size_t at) {
    if (stack_.empty() || function_.globalSlots[at] < 0) return false;
    const Instruction& instruction = code_[at];
    const std::int32_t local = function_.localSlots[at];
    const std::int32_t target = local >= 0 ? makeOperand(OperandSpace::Register, local)
                                           : makeOperand(OperandSpace::Global, function_.globalSlots[at]);
    if (stack_.size() > 1) materialiseAll();
    const Entry value = pop();
    if (InnerInstruction* producer = producerOf(value)) {
        producer->target = target;
    } else {
        emit(InnerOp::Move, instruction.line, target, value);
    }
    if (local >= 0) define(local, definite_);
    return true;
}

bool Lowering::lowerCall(const Instruction& instruction) {
    if (instruction.a < 0 || static_cast<std::size_t>(instruction.a) >= stack_.size()) return false;
    const auto count = static_cast<std::size_t>(instruction.a) + 1;
    settleBelow(count);
    const std::size_t callee = stack_.size() - count;
    for (std::size_t i = callee; i < stack_.size(); ++i) materialise(i);
    for (std::size_t i = 0; i < count; ++i) pop();
    emit(InnerOp::Call, instruction.line, temporary(callee),
         {localCount_ + static_cast<std::int32_t>(callee), 0}, {instruction.a, 0});
    pushResult(instruction.line);
    return true;
}

bool Lowering::lowerArray(const Instruction& instruction) {
    if (instruction.a < 0 || static_cast<std::size_t>(instruction.a) > stack_.size()) return false;
    const auto count = static_cast<std::size_t>(instruction.a);
    settleBelow(count);
    const std::size_t first = stack_.size() - count;
    for (std::size_t i = first; i < stack_.size(); ++i) materialise(i);
    for (std::size_t i = 0; i < count; ++i) pop();
    emit(InnerOp::MakeArray, instruction.line, temporary(first),
         {localCount_ + static_cast<std::int32_t>(first), 0}, {instruction.a, 0});
    pushResult(instruction.line);
    return true;
}

bool Lowering::lowerSetIndex(std::size_t at) {
    const Instruction& instruction = code_[at];
    if (stack_.size() < 3 || instruction.a < 0) return false;
    if (instruction.a > 0 && function_.globalSlots[at] < 0) return false;
    if (stack_.size() > 3) materialiseAll();
    const Entry value = pop();
    const Entry index = pop();
    const Entry container = pop();
    // The third operand has its line with the next instruction.
    const std::int32_t local = function_.localSlots[at];
    const bool isEntry = &function_ == program_.functions.data();
    const bool isNamed = instruction.a > 0 && (local >= 0 || isEntry);
    emit(isNamed ? InnerOp::SetNamedIndex : InnerOp::SetIndex, instruction.line, value.operand, container,
         index);
    const std::int32_t name = local >= 0 ? makeOperand(OperandSpace::Register, local)
                                         : makeOperand(OperandSpace::Global, function_.globalSlots[at]);
    emit(InnerOp::Move, value.line, name);
    barrier_ = out_.instructions.size();
    return true;
}

bool Lowering::lowerDefinition(std::size_t at) {
    const Instruction& instruction = code_[at];
    if (function_.globalSlots[at] < 0 || instruction.b < 0 ||
        static_cast<std::size_t>(instruction.b) >= program_.functions.size())
        return false;
    materialiseAll();
    emit(InnerOp::DefineFunction, instruction.line,
         makeOperand(OperandSpace::Global, function_.globalSlots[at]), {instruction.b, 0});
    return true;
}

bool Lowering::lowerBranch(std::size_t at) {
    if (stack_.empty()) return false;
    const Instruction& instruction = code_[at];
    if (static_cast<std::size_t>(instruction.a) <= at) return false;  // no source says so
    if (stack_.size() > 1) materialiseAll();
    const Entry condition = pop();
    InnerInstruction* producer = producerOf(condition);
    if (producer && inGroup(producer->op, InnerOp::Equal, InnerOp::Or)) {
        producer->op = movedGroup(producer->op, InnerOp::Equal, InnerOp::UnlessEqual);
    } else if (producer && producer->op == InnerOp::Not) {
        producer->op = InnerOp::JumpIfTrue;
    } else {
        emit(InnerOp::JumpIfFalse, instruction.line, 0, condition);
    }
    const auto target = static_cast<std::size_t>(instruction.a);
    patches_.emplace_back(static_cast<std::int32_t>(out_.instructions.size() - 1), target);
    barrier_ = out_.instructions.size();
    reach(target, at);
    return true;
}

bool Lowering::lowerJump(std::size_t at) {
    const Instruction& instruction = code_[at];
    const auto target = static_cast<std::size_t>(instruction.a);
    materialiseAll();
    reach(target, at);
    if (target == at + 1) return true;
    reachable_ = false;
    if (target > at) {
        patches_.emplace_back(static_cast<std::int32_t>(out_.instructions.size()), target);
        emit(InnerOp::Jump, instruction.line);
        return true;
    }
    const auto head = static_cast<std::size_t>(innerAt_[target]);
    const std::int32_t back =
        static_cast<std::int32_t>(head) - static_cast<std::int32_t>(out_.instructions.size()) - 1;
    if (isTestOfLoop(head, at + 1)) {
        const InnerInstruction test = out_.instructions[head];
        const InnerLines lines = out_.lines[head];
        emit(movedGroup(test.op, InnerOp::UnlessEqual, InnerOp::LoopEqual), lines.op, back + 1,
             {test.a, lines.a}, {test.b, lines.b});
    } else {
        emit(InnerOp::Loop, instruction.line, back);
    }
    return true;
}

bool Lowering::lowerReturn(const Instruction& instruction) {
    reachable_ = false;
    if (stack_.empty()) {
        emit(InnerOp::ReturnNil, instruction.line);
        return true;
    }
    settleBelow(1);
    emit(InnerOp::Return, instruction.line, 0, pop());
    return true;
}

}  // namespace

InnerCode lowerFunction(const Program& program, const CompiledFunction& function, Globals& globals) {
    return Lowering(program, function, globals).run();
}

}  // namespace vesper::ruby
