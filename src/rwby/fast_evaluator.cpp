#include "rwby/machine.h"
#include "rwby/operations.h"

namespace vesper::ruby {
namespace {

// Evaluates the nodes of one call. A failure has the line of the node that was last at work.
class FastEvaluator {
public:
    FastEvaluator(RubyVM::Impl& machine, const Program& program, const FastForm& form,
                  const RubyValue* locals)
        : machine_(machine), program_(program), form_(form), locals_(locals) {}

    std::uint32_t line() const { return line_; }

    void evaluateFastNode(std::int32_t index, RubyValue& result) {
        const FastNode& node = nodeAt(index);
        switch (node.kind) {
            case FastNode::Kind::Constant:
                result = program_.constants[static_cast<std::size_t>(node.value)];
                break;
            case FastNode::Kind::Local:
                result = locals_[node.value];
                break;
            case FastNode::Kind::Global:
                result = global(node.globalSlot, node.line);
                break;
            case FastNode::Kind::Unary:
                unary(node, result);
                break;
            case FastNode::Kind::Binary:
                binary(node, result);
                break;
            case FastNode::Kind::Index:
                element(node, result);
                break;
            case FastNode::Kind::Call:
                call(node, result);
                break;
            case FastNode::Kind::Array:
                array(node, result);
                break;
        }
    }

    bool isGuardTrue() {
        RubyValue condition;
        evaluateFastNode(form_.condition, condition);
        return condition.isTruthy();
    }
    void raiseGuardError() {
        const RubyValue callee = global(form_.errorSlot, form_.errorNameLine);
        line_ = form_.errorCallLine;
        machine_.callValue(callee, {&program_.constants[static_cast<std::size_t>(form_.errorText)], 1},
                           {&program_, line_});
    }

private:
    const FastNode& nodeAt(std::int32_t index) const { return form_.nodes[static_cast<std::size_t>(index)]; }

    // Values that stand still; a global does not, since a call further on may change it.
    const RubyValue* leaf(const FastNode& node) const {
        if (node.kind == FastNode::Kind::Local) return &locals_[node.value];
        if (node.kind == FastNode::Kind::Constant)
            return &program_.constants[static_cast<std::size_t>(node.value)];
        return nullptr;
    }
    const RubyValue& operand(std::int32_t index, RubyValue& store) {
        if (const RubyValue* value = leaf(nodeAt(index))) return *value;
        evaluateFastNode(index, store);
        return store;
    }

    const RubyValue& global(std::int32_t slot, std::uint32_t line) {
        const RubyValue& value = machine_.globals.value(slot);
        if (!value.isUndefined()) return value;
        line_ = line;
        throw std::runtime_error("undefined variable or function '" + machine_.globals.name(slot) + "'");
    }

    [[gnu::noinline]] void unary(const FastNode& node, RubyValue& result) {
        RubyValue store;
        const RubyValue& value = operand(node.left, store);
        line_ = node.line;
        result = node.subKind == OpCode::Not ? RubyValue::boolean(!value.isTruthy()) : negate(value);
    }

    // An operand that is no leaf is worked out where the result will stand.
    void binary(const FastNode& node, RubyValue& result) {
        const RubyValue* a = leaf(nodeAt(node.left));
        const RubyValue* b = leaf(nodeAt(node.right));
        if (a && b) {
            combine(node, *a, *b, result);
        } else if (b) {
            evaluateFastNode(node.left, result);
            combine(node, result, *b, result);
        } else if (a) {
            evaluateFastNode(node.right, result);
            combine(node, *a, result, result);
        } else {
            nestedBinary(node, result);
        }
    }
    [[gnu::noinline]] void nestedBinary(const FastNode& node, RubyValue& result) {
        RubyValue right;
        evaluateFastNode(node.left, result);
        evaluateFastNode(node.right, right);
        combine(node, result, right, result);
    }
    void combine(const FastNode& node, const RubyValue& a, const RubyValue& b, RubyValue& result) {
        if (a.isInteger() && b.isInteger() &&
            integers(node.subKind, a.integerValue(), b.integerValue(), result))
            return;
        otherBinary(node, a, b, result);
    }
    [[gnu::noinline]] void otherBinary(const FastNode& node, const RubyValue& a, const RubyValue& b,
                                       RubyValue& result) {
        line_ = node.line;
        result = applyBinary(node.subKind, a, b);
    }
    // False for an operator whose result may be no integer.
    static bool integers(OpCode op, std::int64_t a, std::int64_t b, RubyValue& result) {
        switch (op) {
            case OpCode::Add:
                result.setInteger(wrappedAdd(a, b));
                return true;
            case OpCode::Subtract:
                result.setInteger(wrappedSubtract(a, b));
                return true;
            case OpCode::Multiply:
                result.setInteger(wrappedMultiply(a, b));
                return true;
            case OpCode::Equal:
                result.setBoolean(a == b);
                return true;
            case OpCode::Less:
                result.setBoolean(a < b);
                return true;
            case OpCode::Greater:
                result.setBoolean(a > b);
                return true;
            default:
                return false;
        }
    }

    [[gnu::noinline]] void element(const FastNode& node, RubyValue& result) {
        RubyValue containerStore;
        RubyValue indexStore;
        const RubyValue& container = operand(node.left, containerStore);
        const RubyValue& position = operand(node.right, indexStore);
        line_ = node.line;
        result = indexValue(container, position);
    }

    [[gnu::noinline]] void call(const FastNode& node, RubyValue& result) {
        const std::size_t count = node.arguments.size();
        const StackWindow window(machine_.stack, count + 1);
        RubyValue* values = window.values();
        if (node.callTarget < 0 || static_cast<std::size_t>(node.callTarget) >= form_.nodes.size())
            throw std::runtime_error("fast callable node is out of range");
        evaluateFastNode(node.callTarget, values[0]);
        for (std::size_t i = 0; i < count; ++i) evaluateFastNode(node.arguments[i], values[i + 1]);
        line_ = node.line;
        result = machine_.callValue(values[0], {values + 1, count}, {&program_, node.line});
    }

    [[gnu::noinline]] void array(const FastNode& node, RubyValue& result) {
        std::vector<RubyValue> items(node.arguments.size());
        for (std::size_t i = 0; i < items.size(); ++i) evaluateFastNode(node.arguments[i], items[i]);
        result = RubyValue::array(std::move(items));
    }

    RubyVM::Impl& machine_;
    const Program& program_;
    const FastForm& form_;
    const RubyValue* locals_;
    std::uint32_t line_ = 0;
};

}  // namespace

RubyValue RubyVM::Impl::executeFastFunction(const Program& program, const CompiledFunction& function,
                                            Arguments arguments) {
    FastEvaluator evaluator(*this, program, function.fast, arguments.data());
    try {
        if (function.fast.kind == FastKind::GuardedExpression && evaluator.isGuardTrue())
            evaluator.raiseGuardError();
        RubyValue result;
        evaluator.evaluateFastNode(function.fast.root, result);
        return result;
    } catch (const kelmora::guest::GuestError&) {
        throw;
    } catch (const std::exception&) {
        throw kelmora::guest::GuestError(textOfFailure({&program, evaluator.line()}));
    }
}

}  // namespace vesper::ruby
