#include "plush/shader/flow.h"

#include <algorithm>

namespace kelmora::plush_shader::detail {
namespace {

class FlowAnalysis {
public:
    explicit FlowAnalysis(const Program& program)
        : program_(program), count_(program.instructions.size()), points_(count_ + 1) {}

    std::optional<std::vector<FlowPoint>> run() {
        if (program_.registerCount > flowRegisterLimit || count_ > flowInstructionLimit) return std::nullopt;
        if (!followForward()) return std::nullopt;
        findLiveRegisters();
        findPixelsElsewhere();
        return std::move(points_);
    }

private:
    const Instruction& at(std::size_t index) const { return program_.instructions[index]; }
    static bool writes(Op op) { return op != Op::Jump && op != Op::Jz && op != Op::Halt; }
    static bool jumps(Op op) { return op == Op::Jump || op == Op::Jz; }
    static bool goesOn(Op op) { return op != Op::Jump && op != Op::Halt; }

    RegisterSet outputs() const { return RegisterSet(program_.writeMask & 15u); }

    // Registers that hold the same for every pixel, or its position.
    RegisterSet fixedRegisters() const {
        RegisterSet fixed;
        for (Slot slot = slots::x; slot < slots::firstFree; ++slot) fixed.set(slot);
        for (const ConstantSlot& constant : program_.constants) fixed.set(constant.slot);
        for (const UniformSlot& uniform : program_.uniforms) fixed.set(uniform.slot);
        return fixed;
    }

    // Marks what is reachable. False when some way reads a register before it writes it.
    bool followForward() {
        const RegisterSet fixed = fixedRegisters();
        std::vector<RegisterSet> written(count_ + 1, RegisterSet().set());
        written[0] = fixed | RegisterSet(15);
        points_[0].reachable = true;
        for (std::size_t i = 0; i < count_; ++i) {
            if (!points_[i].reachable) continue;
            const Instruction& instruction = at(i);
            const Op op = instruction.operation();
            const Slot operands[] = {instruction.a, instruction.b, instruction.c};
            for (int k = 0; k < operandCount(op); ++k)
                if (!written[i].test(operands[k])) return false;
            if (op == Op::Random || (writes(op) && fixed.test(instruction.dst))) return false;
            if (jumps(op)) {
                const std::size_t target = instruction.b;
                if (target <= i || target > count_) return false;
                points_[target].reachable = points_[target].isLabel = true;
                written[target] &= written[i];
            }
            if (!goesOn(op)) continue;
            points_[i + 1].reachable = points_[i + 1].fallsIn = true;
            RegisterSet after = written[i];
            if (writes(op)) after.set(instruction.dst);
            written[i + 1] &= after;
        }
        return true;
    }

    void findLiveRegisters() {
        points_[count_].live = outputs();
        for (std::size_t i = count_; i-- > 0;) {
            const Instruction& instruction = at(i);
            const Op op = instruction.operation();
            RegisterSet live;
            if (op == Op::Halt) live = outputs();
            if (goesOn(op)) live |= points_[i + 1].live;
            if (writes(op)) live.reset(instruction.dst);
            if (jumps(op)) live |= points_[instruction.b].live;
            const Slot operands[] = {instruction.a, instruction.b, instruction.c};
            for (int k = 0; k < operandCount(op); ++k) live.set(operands[k]);
            points_[i].live = live;
        }
    }

    void findPixelsElsewhere() {
        std::vector<std::size_t> parked;  // where pixels on the way around come back
        bool halted = false;
        RegisterSet elsewhere;
        for (std::size_t i = 0; i <= count_; ++i) {
            FlowPoint& point = points_[i];
            if (!point.reachable) continue;
            if (point.isLabel) {
                std::erase(parked, i);
                elsewhere = liveAt(parked, halted);
            }
            point.liveInDiverged = elsewhere;
            point.isConvergent = parked.empty() && !halted;
            if (i == count_) break;
            const Op op = at(i).operation();
            const std::size_t target = at(i).b;
            if (op == Op::Halt) halted = true;
            if (jumps(op) && std::find(parked.begin(), parked.end(), target) == parked.end())
                parked.push_back(target);
            if (op == Op::Halt || jumps(op)) elsewhere = liveAt(parked, halted);
        }
    }

    RegisterSet liveAt(const std::vector<std::size_t>& labels, bool halted) const {
        RegisterSet live;
        if (halted) live = outputs();
        for (const std::size_t label : labels) live |= points_[label].live;
        return live;
    }

    const Program& program_;
    std::size_t count_;
    std::vector<FlowPoint> points_;
};

}  // namespace

std::optional<std::vector<FlowPoint>> analyseFlow(const Program& program) {
    return FlowAnalysis(program).run();
}

}  // namespace kelmora::plush_shader::detail
