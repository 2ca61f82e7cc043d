#include <type_traits>
#include <utility>

#include "script/fast_calls.h"
#include "script/fast_expression.h"
#include "script/indexing.h"
#include "script/interpreter.h"
#include "script/numbers.h"
#include "script/operators.h"
#include "script/table_object.h"

// The code behind the nodes of compiled expressions, with the results and the messages of the token walk.
//
// Which path is taken when: chooseNodeCode picks a node's functions once, when its expression is compiled.
// `evaluate` gives any value and is always there; `refer` gives it where it stands (constants, variables), or
// makes it in the caller's storage; `test` gives its truth, without a value where the node compares;
// `integer` is there for nodes that may give an Int without making a value, and is false whenever they do
// not: the caller then evaluates anew, so it has no effect of its own. A node of two leaf operands, each a
// constant or a variable, looks at both where they stand and falls back on the general way of its kind.
// Expressions that are too deep, or malformed, or may skip a `...`, have no nodes: the token walk runs them.
namespace kelmora {
namespace {

using Node = FastExprNode;
using Kind = FastExprNodeKind;

const Variable nilValue;

bool aborted(const Interpreter& script) {
    return script.shouldAbortForSoftRaisedError();
}

const Variable& nameValue(Interpreter& script, const Node& node) {
    const Variable* found = script.scopes.find(node.name);
    return found ? *found : nilValue;
}

// --- What every node can do, made of one of the others ---

const Variable& referByEvaluating(Interpreter& script, const Node& node, Variable& storage) {
    storage = node.evaluate(script, node);
    return storage;
}
Variable evaluateByReferring(Interpreter& script, const Node& node) {
    Variable storage;
    return node.refer(script, node, storage);
}
Variable evaluateByTesting(Interpreter& script, const Node& node) {
    const bool value = node.test(script, node);
    return node.mayCall && aborted(script) ? Variable() : Variable::boolean(value);
}
bool testByReferring(Interpreter& script, const Node& node) {
    Variable storage;
    return isTruthy(node.refer(script, node, storage));
}

// --- Operands of a node with two of them ---

// A plain name, read where it stands.
struct NameOperand {
    static constexpr bool isLeaf = true;
    static constexpr bool givesInteger = true;
    static bool integer(Interpreter& script, const Node& node, std::int32_t& result) {
        const Variable* found = script.scopes.findQuickly(node.name);
        if (!found || !found->isInt()) return false;
        result = found->intValue();
        return true;
    }
    NameOperand(Interpreter& script, const Node& node) : value(nameValue(script, node)) {}
    const Variable& value;
};
struct ConstantOperand {
    static constexpr bool isLeaf = true;
    static constexpr bool givesInteger = true;
    static bool integer(Interpreter&, const Node& node, std::int32_t& result) {
        if (!node.constant.isInt()) return false;
        result = node.constant.intValue();
        return true;
    }
    ConstantOperand(Interpreter&, const Node& node) : value(node.constant) {}
    const Variable& value;
};
// Anything that may stand somewhere already.
struct ReferredOperand {
    static constexpr bool isLeaf = false;
    static constexpr bool givesInteger = false;
    ReferredOperand(Interpreter& script, const Node& node) : value(node.refer(script, node, storage)) {}
    Variable storage;
    const Variable& value;
};
// A result of its own, or a copy since what is evaluated next may change the original.
struct OwnOperand {
    static constexpr bool isLeaf = false;
    static constexpr bool givesInteger = false;
    OwnOperand(Interpreter& script, const Node& node) : value(node.evaluate(script, node)) {}
    Variable value;
};
// A result that may well be an integer.
struct NumberOperand : OwnOperand {
    static constexpr bool givesInteger = true;
    static bool integer(Interpreter& script, const Node& node, std::int32_t& result) {
        return node.integer(script, node, result);
    }
    using OwnOperand::OwnOperand;
};
template <typename Left, typename Right>
constexpr bool giveIntegers = Left::givesInteger&& Right::givesInteger;

// Calls `pick` with the operand classes that fit the node's operands.
template <typename Pick>
auto pickOperands(const Node& node, Pick pick) {
    const auto pickRight = [&]<typename Left>(std::type_identity<Left> left) {
        const Node& right = node.rightNode();
        if (right.kind == Kind::Variable) return pick(left, std::type_identity<NameOperand>());
        if (right.kind == Kind::Constant) return pick(left, std::type_identity<ConstantOperand>());
        if (right.integer) return pick(left, std::type_identity<NumberOperand>());
        if (right.refer == referByEvaluating) return pick(left, std::type_identity<OwnOperand>());
        return pick(left, std::type_identity<ReferredOperand>());
    };
    const Node& left = node.leftNode();
    if (left.kind == Kind::Constant) return pickRight(std::type_identity<ConstantOperand>());
    if (left.kind != Kind::Variable && left.integer) return pickRight(std::type_identity<NumberOperand>());
    if (left.refer == referByEvaluating || node.rightNode().mayCall)
        return pickRight(std::type_identity<OwnOperand>());
    if (left.kind == Kind::Variable) return pickRight(std::type_identity<NameOperand>());
    return pickRight(std::type_identity<ReferredOperand>());
}

// --- Arithmetic ---

template <TokenKind operation>
constexpr bool appliesToFloats =
    operation == TokenKind::Plus || operation == TokenKind::Minus || operation == TokenKind::Multiply;

template <TokenKind operation>
float applyToFloats(float left, float right) {
    if constexpr (operation == TokenKind::Plus) return left + right;
    if constexpr (operation == TokenKind::Minus) return left - right;
    return left * right;
}

template <TokenKind operation>
struct Arithmetic {
    template <typename Left, typename Right>
    static Variable evaluate(Interpreter& script, const Node& node) {
        if constexpr (giveIntegers<Left, Right>) {
            if (std::int32_t result = 0; integer<Left, Right>(script, node, result))
                return Variable::integer(result);
        }
        return evaluateAny<Left, Right>(script, node);
    }

    template <typename Left, typename Right>
    static bool integer(Interpreter& script, const Node& node, std::int32_t& result) {
        std::int32_t left = 0;
        std::int32_t right = 0;
        return Left::integer(script, node.leftNode(), left) &&
               Right::integer(script, node.rightNode(), right) &&
               applyToIntegers(operation, left, right, result);
    }

    template <typename Left, typename Right>
    [[gnu::noinline]] static Variable evaluateAny(Interpreter& script, const Node& node) {
        Left leftOperand(script, node.leftNode());
        if (!Left::isLeaf && aborted(script)) return {};
        const Right rightOperand(script, node.rightNode());
        if (!Right::isLeaf && aborted(script)) return {};
        const Variable& left = leftOperand.value;
        const Variable& right = rightOperand.value;
        if (left.isInt() && right.isInt()) {
            std::int32_t result = 0;
            if (applyToIntegers(operation, left.intValue(), right.intValue(), result))
                return Variable::integer(result);
        }
        if constexpr (appliesToFloats<operation>) {
            if (left.isFloat() && right.isFloat())
                return Variable::number(applyToFloats<operation>(left.floatValue(), right.floatValue()));
        }
        // A text that was built on the way to a longer one is lengthened where it stands.
        if constexpr (operation == TokenKind::Plus && std::is_base_of_v<OwnOperand, Left>) {
            if (left.isString() && !left.stringObject().isShared()) {
                appendInPlace(leftOperand.value, right);
                return std::move(leftOperand.value);
            }
        }
        return performOperation(left, operation, right);
    }
};

template <TokenKind operation>
void setArithmetic(Node& node) {
    pickOperands(node,
                 [&]<typename Left, typename Right>(std::type_identity<Left>, std::type_identity<Right>) {
                     node.evaluate = &Arithmetic<operation>::template evaluate<Left, Right>;
                     if constexpr (giveIntegers<Left, Right>) {
                         if (node.leftNode().integer && node.rightNode().integer)
                             node.integer = &Arithmetic<operation>::template integer<Left, Right>;
                     }
                 });
}

Variable rareOperation(Interpreter& script, const Node& node) {
    const OwnOperand left(script, node.leftNode());
    if (aborted(script)) return {};
    const ReferredOperand right(script, node.rightNode());
    if (aborted(script)) return {};
    return performOperation(left.value, node.operation, right.value);
}

void setOperation(Node& node) {
    switch (node.operation) {
        case TokenKind::Plus:
            return setArithmetic<TokenKind::Plus>(node);
        case TokenKind::Minus:
            return setArithmetic<TokenKind::Minus>(node);
        case TokenKind::Multiply:
            return setArithmetic<TokenKind::Multiply>(node);
        case TokenKind::IntegerDivide:
            return setArithmetic<TokenKind::IntegerDivide>(node);
        case TokenKind::Remainder:
            return setArithmetic<TokenKind::Remainder>(node);
        default:
            node.evaluate = rareOperation;
    }
}

// --- Comparisons ---

template <TokenKind operation, typename Number>
bool compareNumbers(Number left, Number right) {
    if constexpr (operation == TokenKind::Equal) return left == right;
    if constexpr (operation == TokenKind::NotEqual) return left != right;
    if constexpr (operation == TokenKind::Less) return left < right;
    if constexpr (operation == TokenKind::Greater) return left > right;
    if constexpr (operation == TokenKind::LessEqual) return left <= right;
    return left >= right;
}

template <TokenKind operation>
bool compareValues(const Variable& left, const Variable& right) {
    constexpr bool forEquality = operation == TokenKind::Equal || operation == TokenKind::NotEqual;
    if constexpr (forEquality) {
        if (left.isFloat() && right.isFloat())
            return compareNumbers<operation>(left.floatValue(), right.floatValue());
        return variablesEqual(left, right) == (operation == TokenKind::Equal);
    }
    return compareNumbers<operation>(compareVariables(left, right), 0);
}

template <TokenKind operation>
struct Comparison {
    template <typename Left, typename Right>
    static bool test(Interpreter& script, const Node& node) {
        if constexpr (giveIntegers<Left, Right>) {
            std::int32_t left = 0;
            std::int32_t right = 0;
            if (Left::integer(script, node.leftNode(), left) &&
                Right::integer(script, node.rightNode(), right))
                return compareNumbers<operation>(left, right);
        }
        return testAny<Left, Right>(script, node);
    }

    template <typename Left, typename Right>
    [[gnu::noinline]] static bool testAny(Interpreter& script, const Node& node) {
        const Left leftOperand(script, node.leftNode());
        if (!Left::isLeaf && aborted(script)) return false;
        const Right rightOperand(script, node.rightNode());
        if (!Right::isLeaf && aborted(script)) return false;
        const Variable& left = leftOperand.value;
        const Variable& right = rightOperand.value;
        if (left.isInt() && right.isInt())
            return compareNumbers<operation>(left.intValue(), right.intValue());
        return compareValues<operation>(left, right);
    }
};

template <TokenKind operation>
FastExprNode::Test pickComparison(const Node& node) {
    return pickOperands(node,
                        []<typename Left, typename Right>(std::type_identity<Left>,
                                                          std::type_identity<Right>) -> FastExprNode::Test {
                            return &Comparison<operation>::template test<Left, Right>;
                        });
}

FastExprNode::Test chooseComparison(const Node& node) {
    switch (node.operation) {
        case TokenKind::Equal:
            return pickComparison<TokenKind::Equal>(node);
        case TokenKind::NotEqual:
            return pickComparison<TokenKind::NotEqual>(node);
        case TokenKind::Less:
            return pickComparison<TokenKind::Less>(node);
        case TokenKind::Greater:
            return pickComparison<TokenKind::Greater>(node);
        case TokenKind::LessEqual:
            return pickComparison<TokenKind::LessEqual>(node);
        default:
            return pickComparison<TokenKind::GreaterEqual>(node);
    }
}

// --- Leaves ---

Variable evaluateConstant(Interpreter&, const Node& node) {
    return node.constant;
}
const Variable& referToConstant(Interpreter&, const Node& node, Variable&) {
    return node.constant;
}
Variable evaluateName(Interpreter& script, const Node& node) {
    return nameValue(script, node);
}
const Variable& referToName(Interpreter& script, const Node& node, Variable&) {
    return nameValue(script, node);
}
bool testName(Interpreter& script, const Node& node) {
    return isTruthy(nameValue(script, node));
}
const Variable& referToScopedName(Interpreter& script, const Node& node, Variable&) {
    const Variable* found = script.scopes.findExplicit(node.name, node.scope);
    return found ? *found : nilValue;
}
Variable evaluateVarargs(Interpreter& script, const Node&) {
    if (script.varargs.empty()) script.context.throwError("Unknown token: ...", "...");
    return Variable::makeMulti(script.varargs.back());
}

// --- Signs and words in front of an operand ---

Variable evaluateIdentity(Interpreter& script, const Node& node) {
    return node.leftNode().evaluate(script, node.leftNode());
}
Variable evaluateNegation(Interpreter& script, const Node& node) {
    const ReferredOperand operand(script, node.leftNode());
    const Variable& value = operand.value;
    if (aborted(script)) return {};
    if (value.isFloat()) return Variable::number(-value.floatValue());
    if (!value.isNumeric()) script.context.throwError("Unary '-' requires a numeric value", "-");
    return Variable::integer(static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(toInt(value))));
}
Variable evaluateLength(Interpreter& script, const Node& node) {
    const ReferredOperand operand(script, node.leftNode());
    const Variable& value = operand.value;
    return aborted(script) ? Variable() : Variable::integer(arrayLength(value));
}
bool testNot(Interpreter& script, const Node& node) {
    const bool value = node.leftNode().test(script, node.leftNode());
    return !value && !aborted(script);
}

// --- and, or ---

template <bool isOr>
Variable evaluateLogical(Interpreter& script, const Node& node) {
    Variable left = node.leftNode().evaluate(script, node.leftNode());
    if (aborted(script)) return {};
    if (isTruthy(left) == isOr) return left;
    return node.rightNode().evaluate(script, node.rightNode());
}
bool testAnd(Interpreter& script, const Node& node) {
    return node.leftNode().test(script, node.leftNode()) && !aborted(script) &&
           node.rightNode().test(script, node.rightNode());
}
bool testOr(Interpreter& script, const Node& node) {
    return node.leftNode().test(script, node.leftNode()) ||
           (!aborted(script) && node.rightNode().test(script, node.rightNode()));
}

// --- Elements ---

struct Element {
    template <typename Left, typename Right>
    static const Variable& refer(Interpreter& script, const Node& node, Variable& storage) {
        const Left container(script, node.leftNode());
        if (!Left::isLeaf && aborted(script)) return nilValue;
        const Right key(script, node.rightNode());
        if (!Right::isLeaf && aborted(script)) return nilValue;
        const Variable* element = findElement(container.value, key.value);
        if (!element) return storage = script.getIndexedValue(container.value, key.value);
        // A container that ends with this function may take the element with it.
        if constexpr (std::is_base_of_v<OwnOperand, Left>) return storage = *element;
        if constexpr (std::is_same_v<Left, ReferredOperand>) {
            if (&container.value == &container.storage) return storage = *element;
        }
        return *element;
    }
};

FastExprNode::Refer chooseElement(const Node& node) {
    return pickOperands(node,
                        []<typename Left, typename Right>(std::type_identity<Left>, std::type_identity<Right>)
                            -> FastExprNode::Refer { return &Element::refer<Left, Right>; });
}

// --- Constructors ---

Variable evaluateArray(Interpreter& script, const Node& node) {
    std::vector<Variable> items;
    items.reserve(node.count);
    const Node* item = &node.rightNode();
    for (std::uint32_t i = 0; i < node.count; ++i, item = &item->nextNode()) {
        items.push_back(item->evaluate(script, *item));
        if (item->mayCall && aborted(script)) return {};
    }
    return Variable::array(std::move(items));
}

Variable evaluateTable(Interpreter& script, const Node& node) {
    Variable result = Variable::makeTable();
    TableObject& table = result.table();
    if (node.count > 4) table.reserve(node.count);
    std::int32_t position = 0;
    const Node* entry = &node.rightNode();
    for (std::uint32_t i = 0; i < node.count; ++i, entry = &entry->nextNode()) {
        if (entry->kind != Kind::KeyEntry) {
            Variable value = entry->evaluate(script, *entry);
            if (aborted(script)) return {};
            table.set(TableKey(++position), std::move(value));
            continue;
        }
        const Node& keyNode = entry->leftNode();
        const Variable key = keyNode.evaluate(script, keyNode);
        if (keyNode.mayCall && aborted(script)) return {};
        const TableKey tableKey = tableKeyOf(key);  // refused, if it is none, before the value is made
        Variable value = entry->rightNode().evaluate(script, entry->rightNode());
        if (aborted(script)) return {};
        table.set(tableKey, std::move(value));
    }
    return result;
}

}  // namespace

void chooseNodeCode(FastExprNode& node) {
    node.refer = referByEvaluating;
    node.test = testByReferring;
    switch (node.kind) {
        case Kind::Constant:
            if (node.constant.isInt()) node.integer = ConstantOperand::integer;
            node.evaluate = evaluateConstant;
            node.refer = referToConstant;
            break;
        case Kind::Variable:
            node.integer = NameOperand::integer;
            node.evaluate = evaluateName;
            node.refer = referToName;
            node.test = testName;
            break;
        case Kind::ScopedVariable:
            node.evaluate = evaluateByReferring;
            node.refer = referToScopedName;
            break;
        case Kind::Index:
            node.evaluate = evaluateByReferring;
            node.refer = chooseElement(node);
            break;
        case Kind::Call:
            node.evaluate = node.leftNode().kind == Kind::Variable ? evaluateNamedCall : evaluateCall;
            break;
        case Kind::Negate:
            node.evaluate = evaluateNegation;
            break;
        case Kind::Identity:
            node.evaluate = evaluateIdentity;
            break;
        case Kind::Not:
            node.evaluate = evaluateByTesting;
            node.test = testNot;
            break;
        case Kind::Length:
            node.evaluate = evaluateLength;
            break;
        case Kind::Binary:
            if (node.isComparison()) {
                node.evaluate = evaluateByTesting;
                node.test = chooseComparison(node);
            } else {
                setOperation(node);
            }
            break;
        case Kind::And:
            node.evaluate = evaluateLogical<false>;
            node.test = testAnd;
            break;
        case Kind::Or:
            node.evaluate = evaluateLogical<true>;
            node.test = testOr;
            break;
        case Kind::Array:
            node.evaluate = evaluateArray;
            break;
        case Kind::Table:
            node.evaluate = evaluateTable;
            break;
        case Kind::KeyEntry:  // read by its table
            break;
        case Kind::Varargs:
            node.evaluate = evaluateVarargs;
            break;
    }
}

}  // namespace kelmora
