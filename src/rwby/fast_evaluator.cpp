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

    RubyValue evaluateFastNode(std::int32_t index) {
        const FastNode& node = nodeAt(index);
        switch (node.kind) {
            case FastNode::Kind::Constant:
                return program_.constants[static_cast<std::size_t>(node.value)];
            case FastNode::Kind::Local:
                return locals_[node.value];
            case FastNode::Kind::Global:
                return global(node.globalSlot, node.line);
            case FastNode::Kind::Unary:
                return unary(node);
            case FastNode::Kind::Binary:
                return binary(node);
            case FastNode::Kind::Index: {
                RubyValue containerValue;
                RubyValue indexStore;
                const RubyValue& container = operand(node.left, containerValue);
                const RubyValue& position = operand(node.right, indexStore);
                line_ = node.line;
                return indexValue(container, position);
            }
            case FastNode::Kind::Call:
                return call(node);
            case FastNode::Kind::Array:
                return array(node);
        }
        return {};
    }

    void raiseGuardError() {
        RubyValue callee = global(form_.errorSlot, form_.errorNameLine);
        line_ = form_.errorCallLine;
        machine_.callValue(callee, {&program_.constants[static_cast<std::size_t>(form_.errorText)], 1},
                           {&program_, line_});
    }

private:
    const FastNode& nodeAt(std::int32_t index) const { return form_.nodes[static_cast<std::size_t>(index)]; }

    // The value itself where it stands still, else a copy in `store`: a call further on may change a global.
    const RubyValue& operand(std::int32_t index, RubyValue& store) {
        const FastNode& node = nodeAt(index);
        if (node.kind == FastNode::Kind::Local) return locals_[node.value];
        if (node.kind == FastNode::Kind::Constant)
            return program_.constants[static_cast<std::size_t>(node.value)];
        store = evaluateFastNode(index);
        return store;
    }

    RubyValue global(std::int32_t slot, std::uint32_t line) {
        const RubyValue& value = machine_.globals.value(slot);
        if (!value.isUndefined()) return value;
        line_ = line;
        throw std::runtime_error("undefined variable or function '" + machine_.globals.name(slot) + "'");
    }

    RubyValue unary(const FastNode& node) {
        RubyValue store;
        const RubyValue& value = operand(node.left, store);
        if (node.subKind == OpCode::Not) return RubyValue::boolean(!value.isTruthy());
        line_ = node.line;
        return negate(value);
    }

    RubyValue binary(const FastNode& node) {
        RubyValue leftStore;
        RubyValue rightStore;
        const RubyValue& a = operand(node.left, leftStore);
        const RubyValue& b = operand(node.right, rightStore);
        if (a.isInteger() && b.isInteger()) {
            switch (node.subKind) {
                case OpCode::Add:
                    return RubyValue::integer(wrappedAdd(a.integerValue(), b.integerValue()));
                case OpCode::Subtract:
                    return RubyValue::integer(wrappedSubtract(a.integerValue(), b.integerValue()));
                case OpCode::Multiply:
                    return RubyValue::integer(wrappedMultiply(a.integerValue(), b.integerValue()));
                case OpCode::Less:
                    return RubyValue::boolean(a.integerValue() < b.integerValue());
                case OpCode::Greater:
                    return RubyValue::boolean(a.integerValue() > b.integerValue());
                case OpCode::Equal:
                    return RubyValue::boolean(a.integerValue() == b.integerValue());
                default:
                    break;
            }
        }
        line_ = node.line;
        return applyBinary(node.subKind, a, b);
    }

    RubyValue call(const FastNode& node) {
        const std::size_t count = node.arguments.size();
        const StackWindow window(machine_.stack, count + 1);
        RubyValue* values = window.values();
        if (node.callTarget < 0 || static_cast<std::size_t>(node.callTarget) >= form_.nodes.size())
            throw std::runtime_error("fast callable node is out of range");
        values[0] = evaluateFastNode(node.callTarget);
        for (std::size_t i = 0; i < count; ++i) values[i + 1] = evaluateFastNode(node.arguments[i]);
        line_ = node.line;
        return machine_.callValue(values[0], {values + 1, count}, {&program_, node.line});
    }

    RubyValue array(const FastNode& node) {
        std::vector<RubyValue> items;
        items.reserve(node.arguments.size());
        for (const std::int32_t item : node.arguments) items.push_back(evaluateFastNode(item));
        return RubyValue::array(std::move(items));
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
        if (function.fast.kind == FastKind::GuardedExpression &&
            evaluator.evaluateFastNode(function.fast.condition).isTruthy())
            evaluator.raiseGuardError();
        return evaluator.evaluateFastNode(function.fast.root);
    } catch (const kelmora::guest::GuestError&) {
        throw;
    } catch (const std::exception&) {
        throw kelmora::guest::GuestError(textOfFailure({&program, evaluator.line()}));
    }
}

}  // namespace vesper::ruby
