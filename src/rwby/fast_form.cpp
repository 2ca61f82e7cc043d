#include "rwby/fast_form.h"

#include <algorithm>

#include "rwby/program.h"

namespace vesper::ruby {
namespace {

class FastBuilder {
public:
    FastBuilder(const Program& program, const CompiledFunction& function, std::vector<FastNode>& nodes)
        : program_(program), function_(function), nodes_(nodes) {}

    bool take(std::size_t at) {
        const Instruction& instruction = function_.instructions[at];
        FastNode node;
        node.line = instruction.line;
        switch (instruction.op) {
            case OpCode::PushConstant:
                if (!isConstant(instruction.a)) return false;
                node.value = instruction.a;
                return push(std::move(node), 1);
            case OpCode::LoadName:
                return takeName(std::move(node), at);
            case OpCode::Negate:
            case OpCode::Not:
                node.kind = FastNode::Kind::Unary;
                node.subKind = instruction.op;
                return pop(node.left) && push(std::move(node), 0);
            case OpCode::Index:
                node.kind = FastNode::Kind::Index;
                return pop(node.right) && pop(node.left) && push(std::move(node), 0);
            case OpCode::Call:
                node.kind = FastNode::Kind::Call;
                return popArguments(node, instruction.a) && pop(node.callTarget) && push(std::move(node), 0);
            case OpCode::MakeArray:
                node.kind = FastNode::Kind::Array;
                return popArguments(node, instruction.a) && push(std::move(node), 0);
            default:
                if (!isBinary(instruction.op)) return false;
                node.kind = FastNode::Kind::Binary;
                node.subKind = instruction.op;
                return pop(node.right) && pop(node.left) && push(std::move(node), 0);
        }
    }
    std::optional<std::int32_t> result() const {
        if (stack_.size() != 1) return {};
        return stack_[0].node;
    }

private:
    struct Entry {
        std::int32_t node;
        std::int32_t depth;
    };

    bool isConstant(std::int32_t index) const {
        return index >= 0 && static_cast<std::size_t>(index) < program_.constants.size();
    }
    bool takeName(FastNode node, std::size_t at) {
        if (!program_.nameConstant(function_.instructions[at].a)) return false;
        const std::int32_t slot = function_.localSlots[at];
        node.kind = slot >= 0 ? FastNode::Kind::Local : FastNode::Kind::Global;
        node.value = slot >= 0 ? slot : function_.instructions[at].a;
        node.globalSlot = function_.globalSlots[at];
        return push(std::move(node), 1);
    }
    bool pop(std::int32_t& node) {
        if (stack_.empty()) return false;
        node = stack_.back().node;
        depth_ = std::max(depth_, stack_.back().depth);
        stack_.pop_back();
        return true;
    }
    bool popArguments(FastNode& node, std::int32_t count) {
        if (count < 0 || static_cast<std::size_t>(count) > stack_.size()) return false;
        node.arguments.resize(static_cast<std::size_t>(count));
        for (std::size_t i = node.arguments.size(); i-- > 0;)
            if (!pop(node.arguments[i])) return false;
        return true;
    }
    bool push(FastNode node, std::int32_t leafDepth) {
        const std::int32_t depth = leafDepth > 0 ? leafDepth : depth_ + 1;
        depth_ = 0;
        if (depth > maximumFastDepth) return false;
        nodes_.push_back(std::move(node));
        stack_.push_back({static_cast<std::int32_t>(nodes_.size() - 1), depth});
        return true;
    }

    const Program& program_;
    const CompiledFunction& function_;
    std::vector<FastNode>& nodes_;
    std::vector<Entry> stack_;
    std::int32_t depth_ = 0;  // the deepest of the children popped since the last push
};

// The instruction behind the guard, or 0 when none stands at the beginning.
std::size_t readGuard(const Program& program, const CompiledFunction& function, FastForm& form) {
    const auto& code = function.instructions;
    const auto jump = std::find_if(code.begin(), code.end(),
                                   [](const Instruction& i) { return i.op == OpCode::JumpIfFalse; });
    if (jump == code.end()) return 0;
    const auto at = static_cast<std::size_t>(jump - code.begin());
    constexpr std::size_t callLength = 5;
    if (static_cast<std::size_t>(jump->a) != at + 1 + callLength) return 0;
    if (!extractFastErrorCall(program, function, at + 1, form)) return 0;
    const auto condition = buildFastExpressionRange(program, function, 0, at, form.nodes);
    if (!condition) return 0;
    form.condition = *condition;
    return at + 1 + callLength;
}

}  // namespace

std::optional<std::int32_t> buildFastExpressionRange(const Program& program, const CompiledFunction& function,
                                                     std::size_t first, std::size_t end,
                                                     std::vector<FastNode>& nodes) {
    FastBuilder builder(program, function, nodes);
    for (std::size_t at = first; at < end; ++at)
        if (!builder.take(at)) return {};
    return builder.result();
}

bool extractFastErrorCall(const Program& program, const CompiledFunction& function, std::size_t first,
                          FastForm& form) {
    const auto& code = function.instructions;
    if (code.size() < first + 5) return false;
    const Instruction& name = code[first];
    const Instruction& text = code[first + 1];
    const Instruction& call = code[first + 2];
    const Instruction& jump = code[first + 4];
    if (name.op != OpCode::LoadName || text.op != OpCode::PushConstant || call.op != OpCode::Call ||
        call.a != 1 || code[first + 3].op != OpCode::Pop || jump.op != OpCode::Jump ||
        static_cast<std::size_t>(jump.a) != first + 5)
        return false;
    const StringObject* callee = program.nameConstant(name.a);
    if (!callee || callee->text() != "error" || function.localSlots[first] >= 0) return false;
    if (!program.nameConstant(text.a)) return false;
    form.errorText = text.a;
    form.errorSlot = function.globalSlots[first];
    form.errorNameLine = name.line;
    form.errorCallLine = call.line;
    return true;
}

FastForm buildFastForm(const Program& program, const CompiledFunction& function) {
    const auto& code = function.instructions;
    if (code.empty() || code.back().op != OpCode::Return) return {};
    FastForm form;
    const std::size_t start = readGuard(program, function, form);
    form.kind = start > 0 ? FastKind::GuardedExpression : FastKind::Expression;
    if (start == 0) form.nodes.clear();
    const auto root = buildFastExpressionRange(program, function, start, code.size() - 1, form.nodes);
    if (!root) return {};
    form.root = *root;
    chooseEvaluations(form);
    return form;
}

}  // namespace vesper::ruby
