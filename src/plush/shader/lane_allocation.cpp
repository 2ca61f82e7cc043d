#include <algorithm>
#include <limits>
#include <utility>

#include "plush/shader/lane_code.h"

namespace kelmora::plush_shader::detail {
namespace {

constexpr std::size_t laneArrayLimit = 4096;
constexpr std::size_t toTheEnd = std::numeric_limits<std::size_t>::max();

class LaneAllocation {
public:
    explicit LaneAllocation(LaneCode code)
        : code_(std::move(code)),
          uses_(code_.values.size()),
          liveRangeEnd_(code_.values.size()),
          lanes_(code_.values.size(), noLanes) {}

    std::optional<BatchProgram> run() {
        dropUnused(code_.body);
        dropUnused(code_.prologue);
        writeHomesDirectly();
        findLiveRanges();
        place();
        if (result_.laneArrays > laneArrayLimit) return std::nullopt;
        return std::move(result_);
    }

private:
    bool isComputed(ValueId value) const { return code_.values[value].kind == ValueKind::Computed; }

    bool makesValue(const LaneInstruction& instruction) const {
        return instruction.op < BatchOp::PredicatedMov && isComputed(instruction.dst);
    }

    // From the back: what is used by nothing that stays goes.
    void dropUnused(std::vector<LaneInstruction>& code) {
        std::vector<LaneInstruction> kept;
        for (auto instruction = code.rbegin(); instruction != code.rend(); ++instruction) {
            if (makesValue(*instruction) && uses_[instruction->dst] == 0) continue;
            for (const ValueId operand : operandsOf(*instruction))
                if (operand != noValue) ++uses_[operand];
            kept.push_back(*instruction);
        }
        std::reverse(kept.begin(), kept.end());
        code = std::move(kept);
    }

    // A value that is only made to be copied to a home is made there.
    void writeHomesDirectly() {
        std::vector<LaneInstruction> kept;
        for (const LaneInstruction& instruction : code_.body) {
            LaneInstruction* maker = nullptr;
            if (instruction.op == batchOp(Op::Mov) && !isComputed(instruction.dst) &&
                isComputed(instruction.a) && uses_[instruction.a] == 1)
                maker = makerBefore(kept, instruction.a, instruction.dst);
            if (maker)
                maker->dst = instruction.dst;
            else
                kept.push_back(instruction);
        }
        code_.body = std::move(kept);
    }

    // The instruction that made the value, if it is near and could as well write to the home.
    static LaneInstruction* makerBefore(std::vector<LaneInstruction>& code, ValueId value, ValueId home) {
        constexpr std::size_t near = 16;
        for (std::size_t back = 1; back <= std::min(code.size(), near); ++back) {
            LaneInstruction& candidate = code[code.size() - back];
            if (isControl(candidate.op)) return nullptr;
            if (candidate.dst == value && candidate.op < BatchOp::PredicatedMov) return &candidate;
            const auto operands = operandsOf(candidate);
            if (candidate.dst == home || std::count(operands.begin(), operands.end(), home) != 0)
                return nullptr;
        }
        return nullptr;
    }

    void findLiveRanges() {
        for (std::size_t i = 0; i < code_.body.size(); ++i)
            for (const ValueId operand : operandsOf(code_.body[i]))
                if (operand != noValue) liveRangeEnd_[operand] = i;
        for (ValueId id = 0; id < code_.values.size(); ++id)
            if (!isComputed(id) || code_.values[id].invariant) liveRangeEnd_[id] = toTheEnd;
    }

    void place() {
        for (std::size_t i = 0; i < code_.inputs.size(); ++i) {
            const ValueId input = code_.inputs[i];
            const bool wanted = !isComputed(input) || uses_[input] > 0;
            result_.inputs[i] = wanted ? lanesOf(input) : noLanes;
        }
        std::vector<std::uint32_t> labels;
        for (const LaneInstruction& instruction : code_.prologue)
            result_.prologue.push_back(placed(instruction, toTheEnd));
        for (std::size_t i = 0; i < code_.body.size(); ++i) {
            const LaneInstruction& instruction = code_.body[i];
            if (instruction.op == BatchOp::Label) {
                labels.resize(instruction.label + std::size_t{1});
                labels[instruction.label] = static_cast<std::uint32_t>(result_.body.size());
            } else {
                result_.body.push_back(placed(instruction, i));
            }
        }
        for (BatchInstruction& instruction : result_.body)
            if (isControl(instruction.op)) instruction.skip = labels[instruction.skip];
    }

    BatchInstruction placed(const LaneInstruction& instruction, std::size_t index) {
        BatchInstruction out{instruction.op, instruction.comparison};
        out.channels = instruction.channels;
        const bool branches = instruction.op == BatchOp::BranchAll || instruction.op == BatchOp::Branch;
        if (branches && result_.mask == noLanes) {
            result_.mask = newLanes();
            result_.scratch = newLanes();
        }
        out.skip = instruction.label;
        out.a = lanesOf(instruction.a);
        out.b = lanesOf(instruction.b);
        out.c = lanesOf(instruction.c);
        out.d = lanesOf(instruction.d);
        for (const ValueId operand : operandsOf(instruction)) release(operand, index);
        out.dst = lanesOf(instruction.dst);
        return out;
    }

    // Every lane of a result is computed from the same lane of its operands, so it may take their place.
    void release(ValueId value, std::size_t index) {
        if (value == noValue || liveRangeEnd_[value] != index || index == toTheEnd ||
            lanes_[value] == noLanes)
            return;
        free_.push_back(lanes_[value]);
        lanes_[value] = noLanes;
    }

    LaneArray lanesOf(ValueId value) {
        if (value == noValue) return noLanes;
        if (lanes_[value] != noLanes) return lanes_[value];
        // What stays, or has to start clear, gets an array that nothing else used.
        if (liveRangeEnd_[value] == toTheEnd || free_.empty()) {
            lanes_[value] = newLanes();
        } else {
            lanes_[value] = free_.back();
            free_.pop_back();
        }
        const Value& what = code_.values[value];
        if (what.kind == ValueKind::Preloaded) result_.preloads.push_back({lanes_[value], what.slot});
        return lanes_[value];
    }
    LaneArray newLanes() {
        return static_cast<LaneArray>(std::min<std::size_t>(result_.laneArrays++, laneArrayLimit));
    }

    LaneCode code_;
    std::vector<std::uint32_t> uses_;
    std::vector<std::size_t> liveRangeEnd_;  // in the body
    std::vector<LaneArray> lanes_;
    std::vector<LaneArray> free_;
    BatchProgram result_;
};

}  // namespace

std::optional<BatchProgram> allocateLanes(LaneCode code) {
    return LaneAllocation(std::move(code)).run();
}

}  // namespace kelmora::plush_shader::detail
