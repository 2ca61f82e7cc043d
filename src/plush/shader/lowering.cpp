#include <algorithm>
#include <utility>

#include "plush/shader/flow.h"
#include "plush/shader/lane_code.h"

namespace kelmora::plush_shader::detail {
namespace {

std::optional<Comparison> comparisonOf(BatchOp op) {
    switch (static_cast<Op>(op)) {
        case Op::Not:
            return Comparison::Zero;
        case Op::Eq:
            return Comparison::Eq;
        case Op::Ne:
            return Comparison::Ne;
        case Op::Lt:
            return Comparison::Lt;
        case Op::Le:
            return Comparison::Le;
        case Op::Gt:
            return Comparison::Gt;
        case Op::Ge:
            return Comparison::Ge;
        default:
            return std::nullopt;
    }
}

bool isSample(Op op) {
    return op >= Op::SampleR && op <= Op::SampleA;
}

// Turns a program into lane instructions, in the order of the program. A register that some pixels write
// while others, on another way, still need its old value has a home, where writes are merged under the mask.
// Every other write makes a new value, so that copies are only names.
class Lowering {
public:
    Lowering(const Program& program, std::vector<FlowPoint> flow)
        : program_(program),
          flow_(std::move(flow)),
          current_(std::max<std::size_t>(program.registerCount, slots::firstFree), noValue),
          uses_(current_.size()) {}

    LaneCode run() {
        findUses();
        openRegisters();
        const std::size_t count = program_.instructions.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (!flow_[i].reachable) continue;
            if (flow_[i].isLabel) enterLabel(i);
            lower(i);
        }
        emitLabel(count);
        for (Slot channel = 0; channel < 4; ++channel)
            if (isOutput(channel) && !uses_[channel].isDeposited) deposits_[channel] = current_[channel];
        depositsUnderMask_ = false;
        emitDeposits();
        return std::move(code_);
    }

private:
    // The instructions that touch a register, in order.
    struct Uses {
        std::vector<std::size_t> reads;
        std::vector<std::size_t> writes;
        bool hasHome = false;
        // A channel that is not read once it is written: its writes go to the pixels, and who reads it before
        // sees its input.
        bool isDeposited = false;
    };
    struct Fetched {
        ValueId x;
        ValueId y;
        ValueId pixel;
    };
    struct Reconvergence {
        std::size_t label;
        ValueId lanes;
    };

    const Instruction& at(std::size_t index) const { return program_.instructions[index]; }
    bool isOutput(Slot slot) const { return slot <= slots::a && (program_.writeMask >> slot & 1) != 0; }

    void findUses() {
        for (std::size_t i = 0; i < program_.instructions.size(); ++i) {
            if (!flow_[i].reachable) continue;
            const Op op = at(i).operation();
            const Slot operands[] = {at(i).a, at(i).b, at(i).c};
            for (int k = 0; k < operandCount(op); ++k) uses_[operands[k]].reads.push_back(i);
            if (op == Op::Jump || op == Op::Jz || op == Op::Halt) continue;
            Uses& target = uses_[at(i).dst];
            target.writes.push_back(i);
            if (flow_[i].liveInDiverged.test(at(i).dst)) target.hasHome = true;
        }
        for (Slot channel = 0; channel < 4; ++channel) {
            Uses& uses = uses_[channel];
            if (!uses.hasHome || !isOutput(channel)) continue;
            uses.isDeposited = uses.reads.empty() || uses.reads.back() <= uses.writes.front();
            uses.hasHome = !uses.isDeposited;
        }
    }

    void openRegisters() {
        for (Slot slot = 0; slot < current_.size(); ++slot) {
            if (uses_[slot].hasHome)
                current_[slot] = newValue({ValueKind::Home, false, slot});
            else if (slot <= slots::y)
                current_[slot] = newValue({ValueKind::Computed, false, slot});
            if (slot <= slots::y) code_.inputs[slot] = current_[slot];
        }
        const auto preload = [this](Slot slot) {
            current_[slot] = newValue({ValueKind::Preloaded, true, slot});
        };
        for (Slot slot = slots::width; slot < slots::firstFree; ++slot) preload(slot);
        for (const ConstantSlot& constant : program_.constants) preload(constant.slot);
        for (const UniformSlot& uniform : program_.uniforms) preload(uniform.slot);
    }

    void lower(std::size_t index) {
        const Instruction& instruction = at(index);
        switch (instruction.operation()) {
            case Op::Mov:
                return lowerMove(index);
            case Op::Jz:
                return lowerBranch(index);
            case Op::Jump:
                return emitControl(index, {.op = BatchOp::Park, .dst = reconvergenceMaskOf(instruction.b)});
            case Op::Halt:
                return emitControl(index, {.op = BatchOp::Park});
            default:
                return lowerCompute(index);
        }
    }

    void lowerMove(std::size_t index) {
        const Slot target = at(index).dst;
        const ValueId source = current_[at(index).a];
        if (uses_[target].isDeposited) {
            deposit(index, target, source);
        } else if (uses_[target].hasHome) {
            const bool merges = flow_[index].liveInDiverged.test(target);
            if (source != current_[target])
                emit({.op = merges ? BatchOp::PredicatedMov : batchOp(Op::Mov),
                      .dst = current_[target],
                      .a = source});
        } else if (code_.values[source].kind == ValueKind::Home &&
                   changesWhileNeeded(source, target, index)) {
            current_[target] = emitNew({.op = batchOp(Op::Mov), .a = source});
        } else {
            current_[target] = source;
        }
    }

    // Whether the home is written again before the last read of the register that is to stand for it.
    bool changesWhileNeeded(ValueId home, Slot target, std::size_t index) const {
        const std::size_t end = nextAfter(uses_[target].writes, index);
        std::size_t lastRead = index;
        if (end == program_.instructions.size() && isOutput(target))
            lastRead = end;
        else
            for (const std::size_t read : uses_[target].reads)
                if (read <= end) lastRead = std::max(lastRead, read);
        return nextAfter(uses_[code_.values[home].slot].writes, index) <= lastRead;
    }
    std::size_t nextAfter(const std::vector<std::size_t>& places, std::size_t index) const {
        const auto next = std::upper_bound(places.begin(), places.end(), index);
        return next == places.end() ? program_.instructions.size() : *next;
    }

    void lowerCompute(std::size_t index) {
        const Instruction& instruction = at(index);
        const Op op = instruction.operation();
        const Slot operands[] = {instruction.a, instruction.b, instruction.c};
        ValueId values[] = {noValue, noValue, noValue};
        for (int k = 0; k < operandCount(op); ++k) values[k] = current_[operands[k]];
        if (isSample(op)) {
            values[0] = fetched(values[0], values[1]);
            values[1] = noValue;
        }
        LaneInstruction compute{.op = batchOp(op), .a = values[0], .b = values[1], .c = values[2]};
        const Slot target = instruction.dst;
        if (uses_[target].isDeposited) {
            deposit(index, target, emitNew(compute));
        } else if (!uses_[target].hasHome) {
            current_[target] = emitNew(compute);
        } else if (flow_[index].liveInDiverged.test(target)) {
            const ValueId result = emitNew(compute);
            emit({.op = BatchOp::PredicatedMov, .dst = current_[target], .a = result});
        } else {
            compute.dst = current_[target];
            emit(compute);
        }
    }

    // Deposits wait for others, to go together. A home's value may not wait.
    void deposit(std::size_t index, Slot channel, ValueId value) {
        deposits_[channel] = value;
        depositsUnderMask_ = !flow_[index].isConvergent;
        if (code_.values[value].kind == ValueKind::Home) emitDeposits();
    }
    void emitDeposits() {
        std::array<ValueId, 4> varying = nothing, invariant = nothing;
        std::uint8_t channels = 0;
        for (unsigned channel = 0; channel < 4; ++channel) {
            const ValueId value = deposits_[channel];
            if (value == noValue) continue;
            (code_.values[value].invariant ? invariant : varying)[channel] = value;
            channels = static_cast<std::uint8_t>(channels | 1u << channel);
        }
        if (channels == 0) return;
        deposits_ = nothing;
        const ValueId changing = packed(varying);
        emit({.op = depositsUnderMask_ ? BatchOp::Deposit : BatchOp::DepositAll,
              .a = changing,
              .b = packed(invariant),
              .channels = channels});
    }
    ValueId packed(const std::array<ValueId, 4>& channels) {
        if (channels == nothing) return noValue;
        const auto [r, g, b, a] = channels;
        return emitNew({.op = BatchOp::Pack, .a = r, .b = g, .c = b, .d = a});
    }

    // The source's pixel at (x, y), of which several channels are often wanted.
    ValueId fetched(ValueId x, ValueId y) {
        for (const Fetched& known : fetched_)
            if (known.x == x && known.y == y) return known.pixel;
        const ValueId pixel = emitNew({.op = BatchOp::Fetch, .a = x, .b = y});
        const bool stays = code_.values[x].kind != ValueKind::Home && code_.values[y].kind != ValueKind::Home;
        if (stays) fetched_.push_back({x, y, pixel});
        return pixel;
    }

    void lowerBranch(std::size_t index) {
        const ValueId condition = current_[at(index).a];
        LaneInstruction branch{.op = flow_[index].isConvergent ? BatchOp::BranchAll : BatchOp::Branch,
                               .dst = reconvergenceMaskOf(at(index).b),
                               .a = condition};
        const bool isKept = code_.values[condition].kind == ValueKind::Computed;
        if (isKept && !code_.body.empty() && code_.body.back().dst == condition) {
            const LaneInstruction& made = code_.body.back();
            if (const auto comparison = comparisonOf(made.op)) {
                branch.comparison = *comparison;
                branch.a = made.a;
                branch.b = made.b;
            }
        }
        emitControl(index, branch);
    }

    void enterLabel(std::size_t index) {
        fetched_.clear();
        emitLabel(index);
        if (flow_[index].isConvergent) return;
        const BatchOp op = flow_[index].fallsIn ? BatchOp::Reconverge : BatchOp::ReconvergeAlone;
        emitControl(index, {.op = op, .a = reconvergenceMaskOf(index)});
        const auto entry =
            std::find_if(reconvergences_.begin(), reconvergences_.end(),
                         [&](const Reconvergence& candidate) { return candidate.label == index; });
        freeMasks_.push_back(entry->lanes);
        reconvergences_.erase(entry);
    }

    // None where all pixels come together: who waits there needs no list.
    ValueId reconvergenceMaskOf(std::size_t label) {
        if (flow_[label].isConvergent) return noValue;
        for (const Reconvergence& candidate : reconvergences_)
            if (candidate.label == label) return candidate.lanes;
        if (freeMasks_.empty()) freeMasks_.push_back(newValue({ValueKind::Reconvergence, false, 0}));
        reconvergences_.push_back({label, freeMasks_.back()});
        freeMasks_.pop_back();
        return reconvergences_.back().lanes;
    }

    void emitControl(std::size_t index, LaneInstruction instruction) {
        std::size_t label = index + 1;
        while (label < program_.instructions.size() && !flow_[label].isLabel) ++label;
        instruction.label = static_cast<std::uint32_t>(label);
        emitDeposits();
        emit(instruction);
    }
    void emitLabel(std::size_t index) {
        emitDeposits();
        code_.body.push_back({.op = BatchOp::Label, .label = static_cast<std::uint32_t>(index)});
    }
    void emit(const LaneInstruction& instruction) { code_.body.push_back(instruction); }

    // What only depends on values that are the same for all pixels is so too, and is computed once.
    ValueId emitNew(LaneInstruction instruction) {
        bool invariant = true;
        for (const ValueId operand : operandsOf(instruction))
            if (operand != noValue && !code_.values[operand].invariant) invariant = false;
        instruction.dst = newValue({ValueKind::Computed, invariant, 0});
        (invariant ? code_.prologue : code_.body).push_back(instruction);
        return instruction.dst;
    }
    ValueId newValue(Value value) {
        code_.values.push_back(value);
        return static_cast<ValueId>(code_.values.size() - 1);
    }

    const Program& program_;
    std::vector<FlowPoint> flow_;
    std::vector<ValueId> current_;  // what each register stands for
    std::vector<Uses> uses_;
    static constexpr std::array<ValueId, 4> nothing{noValue, noValue, noValue, noValue};
    std::array<ValueId, 4> deposits_ = nothing;  // by channel
    bool depositsUnderMask_ = false;
    std::vector<Fetched> fetched_;
    std::vector<Reconvergence> reconvergences_;
    std::vector<ValueId> freeMasks_;
    LaneCode code_;
};

}  // namespace

std::optional<BatchProgram> lowerToBatches(const Program& program) {
    auto flow = analyseFlow(program);
    if (!flow) return std::nullopt;
    return allocateLanes(Lowering(program, std::move(*flow)).run());
}

}  // namespace kelmora::plush_shader::detail
