#include "rwby/machine.h"
#include "rwby/operations.h"

namespace vesper::ruby {

// Evaluates the nodes of one call. A failure has the line of the node that was last at work.
class FastEvaluator {
public:
    FastEvaluator(RubyVM::Impl& machine, const Program& program, const FastForm& form,
                  const RubyValue* locals)
        : nodes_(form.nodes.data()),
          locals_(locals),
          constants_(program.constants.data()),
          machine_(machine),
          program_(program),
          form_(form) {}

    std::uint32_t line() const { return line_; }

    void evaluateFastNode(std::int32_t index, RubyValue& result) {
        const FastNode& node = nodes_[index];
        node.evaluate(*this, node, result);
    }

    bool isGuardTrue() {
        RubyValue condition;
        evaluateFastNode(form_.condition, condition);
        return condition.isTruthy();
    }
    void raiseGuardError() {
        const RubyValue callee = global(form_.errorSlot, form_.errorNameLine);
        line_ = form_.errorCallLine;
        machine_.callValue(callee, {&constants_[form_.errorText], 1}, {&program_, line_});
    }

    static FastEvaluation evaluationOf(const FastNode& node, const std::vector<FastNode>& nodes);

private:
    const RubyValue& leaf(std::int32_t index) const {
        const FastNode& node = nodes_[index];
        return node.kind == FastNode::Kind::Local ? locals_[node.value] : constants_[node.value];
    }
    const RubyValue& operand(std::int32_t index, RubyValue& store) {
        if (nodes_[index].isLeaf()) return leaf(index);
        evaluateFastNode(index, store);
        return store;
    }

    const RubyValue& global(std::int32_t slot, std::uint32_t line) {
        const RubyValue& value = machine_.globals.value(slot);
        if (!value.isUndefined()) return value;
        line_ = line;
        throw std::runtime_error("undefined variable or function '" + machine_.globals.name(slot) + "'");
    }

    static void evaluateConstant(FastEvaluator& self, const FastNode& node, RubyValue& result) {
        result = self.constants_[node.value];
    }
    static void evaluateLocal(FastEvaluator& self, const FastNode& node, RubyValue& result) {
        result = self.locals_[node.value];
    }
    static void evaluateGlobal(FastEvaluator& self, const FastNode& node, RubyValue& result) {
        result = self.global(node.globalSlot, node.line);
    }
    static void evaluateUnary(FastEvaluator& self, const FastNode& node, RubyValue& result) {
        RubyValue store;
        const RubyValue& value = self.operand(node.left, store);
        self.line_ = node.line;
        result = node.subKind == OpCode::Not ? RubyValue::boolean(!value.isTruthy()) : negate(value);
    }

    // An operand that is no leaf is worked out where the result will stand.
    template <OpCode op, bool isLeftLeaf, bool isRightLeaf>
    static void evaluateBinary(FastEvaluator& self, const FastNode& node, RubyValue& result) {
        if constexpr (isLeftLeaf && isRightLeaf) {
            self.combine<op>(node, self.leaf(node.left), self.leaf(node.right), result);
        } else if constexpr (isRightLeaf) {
            self.evaluateFastNode(node.left, result);
            self.combine<op>(node, result, self.leaf(node.right), result);
        } else if constexpr (isLeftLeaf) {
            self.evaluateFastNode(node.right, result);
            self.combine<op>(node, self.leaf(node.left), result, result);
        } else {
            RubyValue right;
            self.evaluateFastNode(node.left, result);
            self.evaluateFastNode(node.right, right);
            self.combine<op>(node, result, right, result);
        }
    }
    // Integers at once. An operator without a quick case goes the way of OpCode::Divide.
    template <OpCode op>
    void combine(const FastNode& node, const RubyValue& a, const RubyValue& b, RubyValue& result) {
        if (a.isInteger() && b.isInteger()) [[likely]] {
            const std::int64_t left = a.integerValue();
            const std::int64_t right = b.integerValue();
            if constexpr (op == OpCode::Add) return result.setInteger(wrappedAdd(left, right));
            if constexpr (op == OpCode::Subtract) return result.setInteger(wrappedSubtract(left, right));
            if constexpr (op == OpCode::Multiply) return result.setInteger(wrappedMultiply(left, right));
            if constexpr (op == OpCode::Equal) return result.setBoolean(left == right);
            if constexpr (op == OpCode::Less) return result.setBoolean(left < right);
            if constexpr (op == OpCode::Greater) return result.setBoolean(left > right);
        }
        otherBinary(node, a, b, result);
    }
    [[gnu::noinline]] void otherBinary(const FastNode& node, const RubyValue& a, const RubyValue& b,
                                       RubyValue& result) {
        line_ = node.line;
        result = applyBinary(node.subKind, a, b);
    }
    template <OpCode op>
    static FastEvaluation binaryOf(bool isLeftLeaf, bool isRightLeaf) {
        if (isLeftLeaf) return isRightLeaf ? evaluateBinary<op, true, true> : evaluateBinary<op, true, false>;
        return isRightLeaf ? evaluateBinary<op, false, true> : evaluateBinary<op, false, false>;
    }

    static void evaluateElement(FastEvaluator& self, const FastNode& node, RubyValue& result) {
        RubyValue containerStore;
        RubyValue indexStore;
        const RubyValue& container = self.operand(node.left, containerStore);
        const RubyValue& position = self.operand(node.right, indexStore);
        self.line_ = node.line;
        result = indexValue(container, position);
    }

    static void evaluateCall(FastEvaluator& self, const FastNode& node, RubyValue& result) {
        const std::size_t count = node.arguments.size();
        const StackWindow window(self.machine_.stack, count + 1);
        RubyValue* values = window.values();
        if (node.callTarget < 0 || static_cast<std::size_t>(node.callTarget) >= self.form_.nodes.size())
            throw std::runtime_error("fast callable node is out of range");
        self.evaluateFastNode(node.callTarget, values[0]);
        for (std::size_t i = 0; i < count; ++i) self.evaluateFastNode(node.arguments[i], values[i + 1]);
        self.line_ = node.line;
        result = self.machine_.callValue(values[0], {values + 1, count}, {&self.program_, node.line});
    }

    static void evaluateArray(FastEvaluator& self, const FastNode& node, RubyValue& result) {
        RubyItems items(node.arguments.size());
        for (std::size_t i = 0; i < items.size(); ++i) self.evaluateFastNode(node.arguments[i], items[i]);
        result = RubyValue::array(std::move(items));
    }

    const FastNode* nodes_;
    const RubyValue* locals_;
    const RubyValue* constants_;
    std::uint32_t line_ = 0;
    RubyVM::Impl& machine_;
    const Program& program_;
    const FastForm& form_;
};

FastEvaluation FastEvaluator::evaluationOf(const FastNode& node, const std::vector<FastNode>& nodes) {
    const auto isLeaf = [&nodes](std::int32_t index) {
        return nodes[static_cast<std::size_t>(index)].isLeaf();
    };
    switch (node.kind) {
        case FastNode::Kind::Constant:
            return evaluateConstant;
        case FastNode::Kind::Local:
            return evaluateLocal;
        case FastNode::Kind::Global:
            return evaluateGlobal;
        case FastNode::Kind::Unary:
            return evaluateUnary;
        case FastNode::Kind::Index:
            return evaluateElement;
        case FastNode::Kind::Call:
            return evaluateCall;
        case FastNode::Kind::Array:
            return evaluateArray;
        case FastNode::Kind::Binary:
            break;
    }
    const bool left = isLeaf(node.left);
    const bool right = isLeaf(node.right);
    switch (node.subKind) {
        case OpCode::Add:
            return binaryOf<OpCode::Add>(left, right);
        case OpCode::Subtract:
            return binaryOf<OpCode::Subtract>(left, right);
        case OpCode::Multiply:
            return binaryOf<OpCode::Multiply>(left, right);
        case OpCode::Equal:
            return binaryOf<OpCode::Equal>(left, right);
        case OpCode::Less:
            return binaryOf<OpCode::Less>(left, right);
        case OpCode::Greater:
            return binaryOf<OpCode::Greater>(left, right);
        default:
            return binaryOf<OpCode::Divide>(left, right);
    }
}

void chooseEvaluations(FastForm& form) {
    for (FastNode& node : form.nodes) node.evaluate = FastEvaluator::evaluationOf(node, form.nodes);
}

RubyValue RubyVM::Impl::executeFastFunction(const Program& program, const CompiledFunction& function,
                                            Arguments arguments) {
    FastEvaluator evaluator(*this, program, function.fast, arguments.data());
    try {
        if (function.fast.kind == FastKind::GuardedExpression && evaluator.isGuardTrue())
            evaluator.raiseGuardError();
        RubyValue result;
        evaluator.evaluateFastNode(function.fast.root, result);
        return result;
    } catch (const kelmora::guest::TracedGuestError& error) {
        if (error.trail()) addCall(*error.trail(), function, {&program, evaluator.line()});
        throw;
    } catch (const std::exception&) {
        throwFromCall(function, {&program, evaluator.line()});
    }
}

}  // namespace vesper::ruby
