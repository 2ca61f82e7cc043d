#include <algorithm>
#include <optional>
#include <utility>

#include "guest/location_error.h"
#include "lua/compiler.h"
#include "lua/operations.h"

namespace vesper::lua {
namespace {

constexpr std::size_t itemsAtOnce = 50;
constexpr std::size_t textsAtOnce = 100;

// A literal, or a negated one.
std::optional<Value> literalValue(const Expr& expression) {
    if (expression.kind == ExprKind::Literal) return static_cast<const LiteralExpr&>(expression).value;
    if (expression.kind != ExprKind::Unary) return {};
    const auto& unary = static_cast<const UnaryExpr&>(expression);
    if (unary.operation != UnaryOperator::Negate || unary.operand->kind != ExprKind::Literal) return {};
    const Value& value = static_cast<const LiteralExpr&>(*unary.operand).value;
    if (!value.isNumber()) return {};
    return negated(value);
}

bool isComparison(BinaryOperator operation) {
    return operation >= BinaryOperator::Equal;
}

Opcode opcodeBehind(Opcode opcode, std::size_t distance) {
    return static_cast<Opcode>(static_cast<std::size_t>(opcode) + distance);
}

// The opcode of an operation in the group that begins with Add, AddConstant or AddInteger.
Opcode arithmeticOpcode(BinaryOperator operation, Opcode first) {
    switch (operation) {
        case BinaryOperator::Add:
            return first;
        case BinaryOperator::Subtract:
            return opcodeBehind(first, 1);
        case BinaryOperator::Multiply:
            return opcodeBehind(first, 2);
        case BinaryOperator::Divide:
            return opcodeBehind(first, 3);
        default:
            return opcodeBehind(first, 4);
    }
}

// An integer that fits into an instruction.
std::optional<std::uint16_t> shortInteger(const Expr& expression) {
    const auto value = literalValue(expression);
    if (!value || !value->isInteger() || value->integerValue() < INT16_MIN ||
        value->integerValue() > INT16_MAX)
        return {};
    return static_cast<std::uint16_t>(value->integerValue());
}

// The operands of a chain of `..`, from left to right.
std::vector<const Expr*> concatChain(const Expr& expression) {
    std::vector<const Expr*> operands;
    const Expr* left = &expression;
    while (left->kind == ExprKind::Binary) {
        const auto& binary = static_cast<const BinaryExpr&>(*left);
        if (binary.operation != BinaryOperator::Concat) break;
        operands.push_back(binary.right);
        left = binary.left;
    }
    operands.push_back(left);
    std::reverse(operands.begin(), operands.end());
    return operands;
}

// While these are evaluated no variable can change.
bool hasNoCalls(const Expr& expression) {
    switch (expression.kind) {
        case ExprKind::Literal:
        case ExprKind::Variable:
            return true;
        case ExprKind::Parenthesised:
            return hasNoCalls(*static_cast<const ParenthesisedExpr&>(expression).inner);
        case ExprKind::Field:
            return hasNoCalls(*static_cast<const FieldExpr&>(expression).object);
        case ExprKind::Index:
            return hasNoCalls(*static_cast<const IndexExpr&>(expression).object) &&
                   hasNoCalls(*static_cast<const IndexExpr&>(expression).key);
        case ExprKind::Unary:
            return hasNoCalls(*static_cast<const UnaryExpr&>(expression).operand);
        case ExprKind::Binary:
            return hasNoCalls(*static_cast<const BinaryExpr&>(expression).left) &&
                   hasNoCalls(*static_cast<const BinaryExpr&>(expression).right);
        default:
            return false;
    }
}

}  // namespace

bool Compiler::expressionContainsFunction(const Expr& expression) {
    const auto anyContains = [](const ExprList& list) {
        return std::any_of(list.begin(), list.end(),
                           [](const Expr* item) { return expressionContainsFunction(*item); });
    };
    switch (expression.kind) {
        case ExprKind::Literal:
        case ExprKind::Variable:
            return false;
        case ExprKind::Table:
        case ExprKind::Function:
            return true;
        case ExprKind::Field:
            return expressionContainsFunction(*static_cast<const FieldExpr&>(expression).object);
        case ExprKind::Index:
            return anyContains({static_cast<const IndexExpr&>(expression).object,
                                static_cast<const IndexExpr&>(expression).key});
        case ExprKind::Call:
            return expressionContainsFunction(*static_cast<const CallExpr&>(expression).callee) ||
                   anyContains(static_cast<const CallExpr&>(expression).arguments);
        case ExprKind::Binary:
            return anyContains({static_cast<const BinaryExpr&>(expression).left,
                                static_cast<const BinaryExpr&>(expression).right});
        case ExprKind::Logical:
            return anyContains({static_cast<const LogicalExpr&>(expression).left,
                                static_cast<const LogicalExpr&>(expression).right});
        case ExprKind::Unary:
            return expressionContainsFunction(*static_cast<const UnaryExpr&>(expression).operand);
        case ExprKind::Parenthesised:
            return expressionContainsFunction(*static_cast<const ParenthesisedExpr&>(expression).inner);
    }
    return true;
}

void Compiler::move(Register target, Register source, std::uint32_t line) {
    if (target == source) return;
    code_->emit(code_->isTemporary(source) ? Opcode::Take : Opcode::Move, target, source, 0, line);
}

std::uint16_t Compiler::compileOpenValues(const ExprList& values) {
    for (const Expr* value : values) {
        if (value == values.back() && value->kind == ExprKind::Call) {
            compileCall(static_cast<const CallExpr&>(*value), code_->allocate(value->line), manyValues);
            return manyValues;
        }
        toTemporary(*value);
    }
    return static_cast<std::uint16_t>(values.size());
}

const LocalVariable* Compiler::plainLocal(const Expr& expression) const {
    if (expression.kind != ExprKind::Variable) return nullptr;
    const LocalVariable* local = static_cast<const VariableExpr&>(expression).local;
    return local && local->owner == &code_->function() && !local->needsBox() ? local : nullptr;
}

Register Compiler::operand(const Expr& expression) {
    if (expression.kind == ExprKind::Parenthesised)
        return operand(*static_cast<const ParenthesisedExpr&>(expression).inner);
    if (const LocalVariable* local = plainLocal(expression)) return local->place;
    return toTemporary(expression);
}

Register Compiler::operandOver(const Expr& expression, Register target) {
    if (plainLocal(expression) || !code_->isTemporary(target)) return operand(expression);
    toRegister(expression, target);
    return target;
}

Register Compiler::toTemporary(const Expr& expression) {
    const Register place = code_->allocate(expression.line);
    toRegister(expression, place);
    return place;
}

void Compiler::toRegister(const Expr& expression, Register target) {
    checkDepth(expression);
    const Register top = code_->top();
    const std::uint32_t line = expression.line;
    switch (expression.kind) {
        case ExprKind::Literal:
            literalToRegister(static_cast<const LiteralExpr&>(expression).value, target, line);
            break;
        case ExprKind::Variable:
            variableToRegister(static_cast<const VariableExpr&>(expression), target);
            break;
        case ExprKind::Table:
            tableToRegister(static_cast<const TableExpr&>(expression), target);
            break;
        case ExprKind::Function:
            functionToRegister(static_cast<const FunctionExpr&>(expression), target);
            break;
        case ExprKind::Field: {
            const auto& field = static_cast<const FieldExpr&>(expression);
            LiteralExpr key;
            key.line = line;
            key.value = field.name;
            indexToRegister(*field.object, key, target, line);
            break;
        }
        case ExprKind::Index: {
            const auto& index = static_cast<const IndexExpr&>(expression);
            indexToRegister(*index.object, *index.key, target, line);
            break;
        }
        case ExprKind::Call:
            callToRegister(static_cast<const CallExpr&>(expression), target);
            break;
        case ExprKind::Binary: {
            const auto& binary = static_cast<const BinaryExpr&>(expression);
            if (binary.operation == BinaryOperator::Concat) {
                concatToRegister(binary, target);
            } else if (isComparison(binary.operation)) {
                comparisonToRegister(binary, target);
            } else {
                arithmeticToRegister(binary, target);
            }
            break;
        }
        case ExprKind::Logical:
            logicalToRegister(static_cast<const LogicalExpr&>(expression), target);
            break;
        case ExprKind::Unary:
            unaryToRegister(static_cast<const UnaryExpr&>(expression), target);
            break;
        case ExprKind::Parenthesised:
            toRegister(*static_cast<const ParenthesisedExpr&>(expression).inner, target);
            break;
        default:
            kelmora::guest::failParse(chunkName_.letters(), {line, 0}, "unsupported expression");
    }
    code_->releaseTo(top);
}

void Compiler::literalToRegister(const Value& value, Register target, std::uint32_t line) {
    if (value.isNil()) {
        code_->emit(Opcode::LoadNil, target, 1, 0, line);
    } else if (value.isBoolean()) {
        code_->emit(Opcode::LoadBoolean, target, value.booleanValue() ? 1 : 0, 0, line);
    } else if (value.isInteger() && value.integerValue() >= INT32_MIN && value.integerValue() <= INT32_MAX) {
        code_->emitWide(Opcode::LoadInteger, target, value.integerValue(), line);
    } else {
        code_->emitWide(Opcode::LoadConstant, target, code_->constant(value), line);
    }
}

void Compiler::variableToRegister(const VariableExpr& variable, Register target) {
    const LocalVariable* local = variable.local;
    const std::uint32_t line = variable.line;
    if (!local) {
        code_->emitWide(Opcode::GetGlobal, target, variable.global, line);
    } else if (local->owner == &code_->function()) {
        const Opcode opcode = local->needsBox() ? Opcode::GetBox : Opcode::Move;
        if (opcode == Opcode::GetBox || target != local->place)
            code_->emit(opcode, target, local->place, 0, line);
    } else if (code_->isOwnName(*local)) {
        code_->emit(Opcode::LoadSelf, target, 0, 0, line);
    } else {
        const Opcode opcode = local->needsBox() ? Opcode::GetCaptureBox : Opcode::GetCapture;
        code_->emit(opcode, target, code_->captureIndex(*local), 0, line);
    }
}

void Compiler::tableToRegister(const TableExpr& table, Register target) {
    if (code_->isTemporary(target) && target + 1 == code_->top()) {
        tableItems(table, target);
        return;
    }
    const Register place = code_->allocate(table.line);
    tableItems(table, place);
    move(target, place, table.line);
}

// Items wait in the registers behind the table until a few can be stored at once.
void Compiler::tableItems(const TableExpr& table, Register place) {
    const auto hasKey = [](const TableExpr::Field& field) { return field.key != nullptr; };
    const auto keyed =
        static_cast<std::size_t>(std::count_if(table.fields.begin(), table.fields.end(), hasKey));
    const std::size_t items = std::min<std::size_t>(table.fields.size() - keyed, UINT16_MAX);
    code_->emit(Opcode::NewTable, place, items, std::min<std::size_t>(keyed, 1024), table.line);
    std::size_t stored = 0;
    std::uint16_t waiting = 0;
    const auto store = [&](std::uint16_t count) {
        code_->emit(Opcode::SetList, place, count, 0, table.line);
        code_->emitWide(Opcode::Jump, 0, static_cast<std::int64_t>(stored), table.line);
        stored += waiting;
        waiting = 0;
        code_->releaseTo(static_cast<Register>(place + 1));
    };
    for (const TableExpr::Field& field : table.fields) {
        const Register top = code_->top();
        if (field.key) {
            const Register value = operand(*field.value);
            std::uint16_t name = 0;
            if (field.key->kind == ExprKind::Literal && constantOperand(*field.key, name) &&
                static_cast<const LiteralExpr&>(*field.key).value.isString()) {
                code_->emit(Opcode::SetField, place, name, value, field.key->line);
            } else {
                code_->emit(Opcode::SetIndex, place, operand(*field.key), value, field.key->line);
            }
            code_->releaseTo(top);
        } else if (&field == &table.fields.back() && field.value->kind == ExprKind::Call) {
            compileCall(static_cast<const CallExpr&>(*field.value), code_->allocate(field.value->line),
                        manyValues);
            store(manyValues);
        } else {
            toTemporary(*field.value);
            if (++waiting == itemsAtOnce) store(waiting);
        }
    }
    if (waiting != 0) store(waiting);
}

void Compiler::functionToRegister(const FunctionExpr& function, Register target) {
    auto child = compileFunction(function);
    code_->addChild(std::move(child));
    code_->emitWide(Opcode::Closure, target, static_cast<std::int64_t>(code_->childCount()) - 1,
                    function.line);
}

void Compiler::indexToRegister(const Expr& object, const Expr& key, Register target, std::uint32_t line) {
    const Register source = operandOver(object, target);
    if (key.kind == ExprKind::Literal) {
        const Value& value = static_cast<const LiteralExpr&>(key).value;
        std::uint16_t index = 0;
        if (value.isString() && constantOperand(key, index)) {
            code_->emit(Opcode::GetField, target, source, index, line);
            return;
        }
        if (value.isInteger() && value.integerValue() >= 0 && value.integerValue() <= UINT16_MAX) {
            code_->emit(Opcode::GetItem, target, source, static_cast<std::size_t>(value.integerValue()),
                        line);
            return;
        }
    }
    code_->emit(Opcode::GetIndex, target, source, operand(key), line);
}

bool Compiler::constantOperand(const Expr& expression, std::uint16_t& index) {
    const auto value = literalValue(expression);
    if (!value) return false;
    const std::uint32_t constant = code_->constant(*value);
    index = static_cast<std::uint16_t>(constant);
    return constant <= UINT16_MAX;
}

void Compiler::arithmeticToRegister(const BinaryExpr& binary, Register target) {
    const Expr* left = binary.left;
    const Expr* right = binary.right;
    const bool swaps =
        binary.operation == BinaryOperator::Add || binary.operation == BinaryOperator::Multiply;
    const auto isNumber = [](const Expr& expression) {
        const auto value = literalValue(expression);
        return value && value->isNumber();
    };
    if (swaps && isNumber(*left) && !isNumber(*right)) std::swap(left, right);
    const Register first = operandOver(*left, target);
    const auto integer = shortInteger(*right);
    const bool isDivision =
        binary.operation == BinaryOperator::Divide || binary.operation == BinaryOperator::Modulo;
    std::uint16_t constant = 0;
    Opcode group = Opcode::Add;
    std::size_t second = 0;
    if (integer && (!isDivision || (*integer != 0 && *integer <= INT16_MAX))) {
        group = Opcode::AddInteger;
        second = *integer;
    } else if (isNumber(*right) && constantOperand(*right, constant)) {
        group = Opcode::AddConstant;
        second = constant;
    } else {
        second = operand(*right);
    }
    code_->emit(arithmeticOpcode(binary.operation, group), target, first, second, binary.line);
}

// Into registers from `start` on, joined whenever there are many; how many are left to join.
std::size_t Compiler::concatOperands(const std::vector<const Expr*>& operands, Register start,
                                     std::uint32_t line) {
    std::size_t count = 0;
    for (const Expr* item : operands) {
        if (count == textsAtOnce) {
            code_->emit(Opcode::Concat, start, start, count, line);
            code_->releaseTo(static_cast<Register>(start + 1));
            count = 1;
        }
        toTemporary(*item);
        ++count;
    }
    return count;
}

void Compiler::concatToRegister(const BinaryExpr& binary, Register target) {
    const Register start = code_->top();
    const std::size_t count = concatOperands(concatChain(binary), start, binary.line);
    code_->emit(Opcode::Concat, target, start, count, binary.line);
}

// `x = x .. more` lengthens the text in place when nothing else holds it.
bool Compiler::compileAppend(const VariableExpr& target, const Expr& value, std::uint32_t line) {
    if (value.kind != ExprKind::Binary) return false;
    if (static_cast<const BinaryExpr&>(value).operation != BinaryOperator::Concat) return false;
    std::vector<const Expr*> operands = concatChain(value);
    if (operands[0]->kind != ExprKind::Variable) return false;
    const auto& first = static_cast<const VariableExpr&>(*operands[0]);
    const LocalVariable* local = target.local;
    if (first.local != local) return false;
    operands.erase(operands.begin());
    const Register start = code_->top();
    if (local) {
        if (!plainLocal(target)) return false;
        const std::size_t count = concatOperands(operands, start, value.line);
        code_->emit(Opcode::Append, local->place, start, count, value.line);
        return true;
    }
    const auto isCalm = [](const Expr* item) { return hasNoCalls(*item); };
    if (first.global != target.global || !std::all_of(operands.begin(), operands.end(), isCalm)) return false;
    const std::size_t count = concatOperands(operands, start, value.line);
    code_->emit(Opcode::AppendGlobal, 0, start, count, value.line);
    code_->emitWide(Opcode::Jump, 0, target.global, line);
    return true;
}

void Compiler::logicalToRegister(const LogicalExpr& logical, Register target) {
    const Register place = code_->isTemporary(target) ? target : code_->allocate(logical.line);
    toRegister(*logical.left, place);
    const std::size_t end =
        code_->emitJump(logical.isAnd ? Opcode::JumpIfNot : Opcode::JumpIf, place, logical.line);
    toRegister(*logical.right, place);
    code_->patch(end, code_->here());
    move(target, place, logical.line);
}

void Compiler::comparisonToRegister(const Expr& comparison, Register target) {
    const std::uint32_t line = comparison.line;
    JumpList whenTrue;
    condition(comparison, true, whenTrue);
    code_->emit(Opcode::LoadBoolean, target, 0, 0, line);
    const std::size_t end = code_->emitJump(Opcode::Jump, 0, line);
    code_->patchHere(whenTrue);
    code_->emit(Opcode::LoadBoolean, target, 1, 0, line);
    code_->patch(end, code_->here());
}

void Compiler::unaryToRegister(const UnaryExpr& unary, Register target) {
    if (const auto value = literalValue(unary)) {
        literalToRegister(*value, target, unary.line);
        return;
    }
    const Register source = operand(*unary.operand);
    const Opcode opcode = unary.operation == UnaryOperator::Negate ? Opcode::Negate
                          : unary.operation == UnaryOperator::Not  ? Opcode::Not
                                                                   : Opcode::Length;
    code_->emit(opcode, target, source, 0, unary.line);
}

void Compiler::callToRegister(const CallExpr& call, Register target) {
    if (code_->isTemporary(target) && target + 1 == code_->top()) {
        compileCall(call, target, 1);
        return;
    }
    const Register base = code_->allocate(call.line);
    compileCall(call, base, 1);
    move(target, base, call.line);
}

void Compiler::compileCall(const CallExpr& call, Register base, std::uint16_t wanted) {
    std::uint16_t count = 0;
    if (call.isMethod) {
        Register object = base;
        if (const LocalVariable* local = plainLocal(*call.callee)) {
            object = local->place;
        } else {
            toRegister(*call.callee, base);
        }
        code_->allocate(call.line);
        const std::uint32_t name = code_->constant(call.method);
        if (name > UINT16_MAX)
            kelmora::guest::failParse(chunkName_.letters(), {call.line, 0},
                                      "function needs too many constants");
        code_->emit(Opcode::Method, base, object, name, call.line);
        count = compileOpenValues(call.arguments);
        if (count != manyValues) ++count;
    } else {
        toRegister(*call.callee, base);
        count = compileOpenValues(call.arguments);
    }
    code_->emit(Opcode::Call, base, count, wanted, call.line);
    code_->releaseTo(static_cast<Register>(base + 1));
}

void Compiler::condition(const Expr& expression, bool wanted, JumpList& jumps) {
    checkDepth(expression);
    const Register top = code_->top();
    switch (expression.kind) {
        case ExprKind::Literal:
            if (static_cast<const LiteralExpr&>(expression).value.isTruthy() == wanted)
                jumps.push_back(code_->emitJump(Opcode::Jump, 0, expression.line));
            return;
        case ExprKind::Parenthesised:
            return condition(*static_cast<const ParenthesisedExpr&>(expression).inner, wanted, jumps);
        case ExprKind::Logical: {
            const auto& logical = static_cast<const LogicalExpr&>(expression);
            JumpList skips;
            // `and` fails with its first operand, `or` holds with it.
            condition(*logical.left, !logical.isAnd, logical.isAnd == wanted ? skips : jumps);
            condition(*logical.right, wanted, jumps);
            code_->patchHere(skips);
            return;
        }
        case ExprKind::Unary: {
            const auto& unary = static_cast<const UnaryExpr&>(expression);
            if (unary.operation == UnaryOperator::Not) return condition(*unary.operand, !wanted, jumps);
            break;
        }
        case ExprKind::Binary: {
            const auto& binary = static_cast<const BinaryExpr&>(expression);
            if (!isComparison(binary.operation)) break;
            comparison(binary, wanted, jumps);
            code_->releaseTo(top);
            return;
        }
        default:
            break;
    }
    const Register value = operand(expression);
    jumps.push_back(code_->emitJump(wanted ? Opcode::JumpIf : Opcode::JumpIfNot, value, expression.line));
    code_->releaseTo(top);
}

// An opcode stands in front of its opposite.
void Compiler::emitComparison(Opcode opcode, std::size_t a, std::size_t b, bool wanted, JumpList& jumps,
                              std::uint32_t line) {
    code_->emit(opcodeBehind(opcode, wanted ? 0 : 1), a, b, 0, line);
    jumps.push_back(code_->emitJump(Opcode::Jump, 0, line));
}

void Compiler::comparison(const BinaryExpr& binary, bool wanted, JumpList& jumps) {
    const BinaryOperator operation = binary.operation;
    const bool isEquality = operation == BinaryOperator::Equal || operation == BinaryOperator::NotEqual;
    const Expr* left = binary.left;
    const Expr* right = binary.right;
    const auto stays = [isEquality](const Expr& expression) {
        return isEquality ? literalValue(expression).has_value() : shortInteger(expression).has_value();
    };
    const bool turned = stays(*left) && !stays(*right);
    if (turned) std::swap(left, right);
    if (isEquality) {
        equality(*left, *right, wanted == (operation == BinaryOperator::Equal), jumps, binary.line);
        return;
    }
    const bool orEqual = operation == BinaryOperator::LessEqual || operation == BinaryOperator::GreaterEqual;
    const bool isGreater =
        (operation == BinaryOperator::Greater || operation == BinaryOperator::GreaterEqual) != turned;
    const Register first = operand(*left);
    if (const auto integer = shortInteger(*right)) {
        const Opcode less = orEqual ? Opcode::IfLessEqualInteger : Opcode::IfLessInteger;
        const Opcode greater = orEqual ? Opcode::IfGreaterEqualInteger : Opcode::IfGreaterInteger;
        emitComparison(isGreater ? greater : less, first, *integer, wanted, jumps, binary.line);
        return;
    }
    const Register second = operand(*right);
    emitComparison(orEqual ? Opcode::IfLessEqual : Opcode::IfLess, isGreater ? second : first,
                   isGreater ? first : second, wanted, jumps, binary.line);
}

void Compiler::equality(const Expr& left, const Expr& right, bool wanted, JumpList& jumps,
                        std::uint32_t line) {
    const Register first = operand(left);
    std::uint16_t constant = 0;
    if (const auto integer = shortInteger(right)) {
        emitComparison(Opcode::IfEqualInteger, first, *integer, wanted, jumps, line);
    } else if (constantOperand(right, constant)) {
        emitComparison(Opcode::IfEqualConstant, first, constant, wanted, jumps, line);
    } else {
        emitComparison(Opcode::IfEqual, first, operand(right), wanted, jumps, line);
    }
}

}  // namespace vesper::lua
