#include "script/fast_evaluator.h"

#include "script/argument_list.h"
#include "script/numbers.h"
#include "script/operators.h"
#include "script/vesper_script.h"

namespace kelmora {
namespace {

const Variable nilValue;

bool isLeaf(const FastExprNode& node) {
    return node.kind <= FastExprNodeKind::ScopedVariable;
}

bool isComparison(const FastExprNode& node) {
    return node.kind == FastExprNodeKind::Binary && node.operation >= TokenKind::Equal &&
           node.operation <= TokenKind::GreaterEqual;
}

template <typename Number>
bool compareNumbers(Number left, TokenKind operation, Number right) {
    switch (operation) {
        case TokenKind::Equal:
            return left == right;
        case TokenKind::NotEqual:
            return left != right;
        case TokenKind::Less:
            return left < right;
        case TokenKind::Greater:
            return left > right;
        case TokenKind::LessEqual:
            return left <= right;
        default:
            return left >= right;
    }
}

}  // namespace

bool FastEvaluator::aborted() const {
    return script_.shouldAbortForSoftRaisedError();
}

const Variable& FastEvaluator::read(const FastExprNode& node) const {
    if (node.kind == FastExprNodeKind::Constant) return expression_.constants[node.value];
    const Variable* found = node.kind == FastExprNodeKind::Variable
                                ? script_.scopes().find(node.value)
                                : script_.scopes().findExplicit(node.value, node.scope);
    return found ? *found : nilValue;
}

const Variable& FastEvaluator::operand(const FastExprNode& node, Variable& storage, bool keep) {
    if (isLeaf(node)) {
        const Variable& value = read(node);
        if (!keep || node.kind == FastExprNodeKind::Constant) return value;
        storage = value;
    } else {
        storage = evaluate(node);
    }
    return storage;
}

Variable FastEvaluator::evaluate(const FastExprNode& node) {
    switch (node.kind) {
        case FastExprNodeKind::Constant:
        case FastExprNodeKind::Variable:
        case FastExprNodeKind::ScopedVariable:
            return read(node);
        case FastExprNodeKind::Index:
            return index(node);
        case FastExprNodeKind::Call:
            return call(node);
        case FastExprNodeKind::Negate:
            return negate(node);
        case FastExprNodeKind::Identity:
            return evaluate(this->node(node.left));
        case FastExprNodeKind::Not: {
            const bool value = condition(this->node(node.left));
            return aborted() ? Variable() : Variable::boolean(!value);
        }
        case FastExprNodeKind::Length: {
            Variable storage;
            const Variable& value = operand(this->node(node.left), storage, false);
            return aborted() ? Variable() : Variable::integer(arrayLength(value));
        }
        case FastExprNodeKind::Binary:
            return binary(node);
        case FastExprNodeKind::And:
        case FastExprNodeKind::Or: {
            Variable left = evaluate(this->node(node.left));
            if (aborted()) return {};
            const bool decided = isTruthy(left) == (node.kind == FastExprNodeKind::Or);
            return decided ? left : evaluate(this->node(node.right));
        }
    }
    return {};
}

bool FastEvaluator::condition(const FastExprNode& node) {
    if (isComparison(node)) return compare(node);
    switch (node.kind) {
        case FastExprNodeKind::Not: {
            const bool value = condition(this->node(node.left));
            return !aborted() && !value;
        }
        case FastExprNodeKind::And:
            return condition(this->node(node.left)) && !aborted() && condition(this->node(node.right));
        case FastExprNodeKind::Or:
            return condition(this->node(node.left)) || (!aborted() && condition(this->node(node.right)));
        default: {
            Variable storage;
            return isTruthy(operand(node, storage, false));
        }
    }
}

bool FastEvaluator::compare(const FastExprNode& node) {
    Variable leftStorage;
    Variable rightStorage;
    const FastExprNode& rightNode = this->node(node.right);
    const Variable& left = operand(this->node(node.left), leftStorage, rightNode.mayCall);
    if (node.mayCall && aborted()) return false;
    const Variable& right = operand(rightNode, rightStorage, false);
    if (node.mayCall && aborted()) return false;
    if (left.isInt() && right.isInt())
        return compareNumbers(left.intValue(), node.operation, right.intValue());
    if (left.isFloat() && right.isFloat() && node.operation <= TokenKind::NotEqual)
        return compareNumbers(left.floatValue(), node.operation, right.floatValue());
    switch (node.operation) {
        case TokenKind::Equal:
            return variablesEqual(left, right);
        case TokenKind::NotEqual:
            return !variablesEqual(left, right);
        default:
            return compareNumbers(compareVariables(left, right), node.operation, 0);
    }
}

Variable FastEvaluator::binary(const FastExprNode& node) {
    if (isComparison(node)) {
        const bool result = compare(node);
        return node.mayCall && aborted() ? Variable() : Variable::boolean(result);
    }
    Variable leftStorage;
    Variable rightStorage;
    const FastExprNode& rightNode = this->node(node.right);
    const Variable& left = operand(this->node(node.left), leftStorage, rightNode.mayCall);
    if (node.mayCall && aborted()) return {};
    const Variable& right = operand(rightNode, rightStorage, false);
    if (node.mayCall && aborted()) return {};
    if (left.isInt() && right.isInt()) {
        const auto a = static_cast<std::uint32_t>(left.intValue());
        const auto b = static_cast<std::uint32_t>(right.intValue());
        switch (node.operation) {
            case TokenKind::Plus:
                return Variable::integer(static_cast<std::int32_t>(a + b));
            case TokenKind::Minus:
                return Variable::integer(static_cast<std::int32_t>(a - b));
            case TokenKind::Multiply:
                return Variable::integer(static_cast<std::int32_t>(a * b));
            default:
                break;
        }
    }
    // A text that was built on the way to a longer one is lengthened where it stands.
    if (node.operation == TokenKind::Plus && &left == &leftStorage && leftStorage.isString() &&
        !leftStorage.stringObject().isShared() &&
        tryApplyOperationInPlace(leftStorage, TokenKind::Plus, right))
        return leftStorage;
    return performOperation(left, node.operation, right);
}

Variable FastEvaluator::negate(const FastExprNode& node) {
    Variable storage;
    const Variable& value = operand(this->node(node.left), storage, false);
    if (aborted()) return {};
    if (value.isFloat()) return Variable::number(-value.floatValue());
    if (!value.isNumeric()) script_.context().throwError("Unary '-' requires a numeric value", "-");
    return Variable::integer(static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(toInt(value))));
}

Variable FastEvaluator::index(const FastExprNode& node) {
    Variable containerStorage;
    Variable keyStorage;
    const FastExprNode& keyNode = this->node(node.right);
    const Variable& container = operand(this->node(node.left), containerStorage, keyNode.mayCall);
    if (node.mayCall && aborted()) return {};
    const Variable& key = operand(keyNode, keyStorage, false);
    if (node.mayCall && aborted()) return {};
    return script_.getIndexedValue(container, key);
}

Variable FastEvaluator::call(const FastExprNode& node) {
    const Variable callee = evaluate(this->node(node.left));
    if (aborted()) return {};
    ArgumentList arguments;
    for (std::uint32_t i = 0; i < node.value; ++i) {
        const auto argument = expression_.callArguments[static_cast<std::size_t>(node.right) + i];
        const FastExprNode& argumentNode = this->node(argument);
        arguments.push(evaluate(argumentNode));
        if (argumentNode.mayCall && aborted()) return {};
    }
    return script_.invokeCallable(callee, arguments.span());
}

}  // namespace kelmora
