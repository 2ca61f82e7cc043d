#include "script/code_builder.h"

#include <stdexcept>

namespace kelmora {
namespace {

Operation arithmeticOf(TokenKind operation) {
    switch (operation) {
        case TokenKind::Plus:
            return Operation::Add;
        case TokenKind::Minus:
            return Operation::Subtract;
        case TokenKind::Multiply:
            return Operation::Multiply;
        case TokenKind::IntegerDivide:
            return Operation::IntegerDivide;
        case TokenKind::Remainder:
            return Operation::Remainder;
        default:
            return Operation::Operate;
    }
}

std::ptrdiff_t distance(std::uint32_t from, std::uint32_t to) {
    constexpr std::ptrdiff_t size = sizeof(Instruction);
    return (static_cast<std::ptrdiff_t>(to) - static_cast<std::ptrdiff_t>(from)) * size;
}

// Replaces one of a row of operations by its like in another row of the same order.
bool replace(Operation& operation, Operation first, Operation last, Operation like) {
    if (operation < first || operation > last) return false;
    const int distance = static_cast<int>(like) - static_cast<int>(first);
    operation = static_cast<Operation>(static_cast<int>(operation) + distance);
    return true;
}

// Makes use of a right operand that is an integer constant.
void takeInteger(Instruction& instruction, const FastExprNode& right) {
    if (right.kind != FastExprNodeKind::Constant || !right.constant.isInt()) return;
    if (replace(instruction.operation, Operation::Add, Operation::Remainder, Operation::AddInteger) ||
        replace(instruction.operation, Operation::JumpIfEqual, Operation::JumpUnlessGreaterEqual,
                Operation::JumpIfEqualInteger))
        instruction.number = static_cast<std::uint32_t>(right.constant.intValue());
}

const FastExprNode& withoutIdentity(const FastExprNode& node) {
    return node.kind == FastExprNodeKind::Identity ? withoutIdentity(node.leftNode()) : node;
}

// Puts the result on the stack, if there is an operation that does.
bool pushResult(Instruction& instruction, Place* way) {
    if (!replace(instruction.operation, Operation::Add, Operation::Subtract, Operation::PushAdd) &&
        !replace(instruction.operation, Operation::AddInteger, Operation::SubtractInteger,
                 Operation::PushAddInteger))
        return false;
    instruction.a = way;
    return true;
}

Operation jumpOf(TokenKind comparison, bool when) {
    const Operation first = when ? Operation::JumpIfEqual : Operation::JumpUnlessEqual;
    const auto distance = static_cast<int>(comparison) - static_cast<int>(TokenKind::Equal);
    return static_cast<Operation>(static_cast<int>(first) + distance);
}

bool isNamedElement(const FastExprNode& node) {
    return node.kind == FastExprNodeKind::Index && node.rightNode().kind == FastExprNodeKind::Constant &&
           node.rightNode().constant.isString();
}

}  // namespace

void CodeBuilder::emit(Operation operation, Operands operands) {
    Instruction instruction;
    instruction.operation = operation;
    instruction.kind = operands.kind;
    instruction.flags = operands.flags;
    instruction.number = operands.number;
    instruction.a = operands.a;
    instruction.b = operands.b;
    instruction.c = operands.c;
    if (operation == Operation::OpenFor && isTemporary(operands.a))
        instruction.temporaries |= Instruction::usesUpA;
    if (isTemporary(operands.b)) instruction.temporaries |= Instruction::usesUpB;
    if (isTemporary(operands.c)) instruction.temporaries |= Instruction::usesUpC;
    code_.instructions.push_back(instruction);
    code_.sites.push_back(site_);
}

void CodeBuilder::emitCalling(Operation operation, Operands operands) {
    emit(operation, operands);
    code_.behindCalls.push_back(here());
}

void CodeBuilder::emitFault(const char* message, const char* token) {
    emit(Operation::Fault, {.number = addText({message, token})});
}

std::uint32_t CodeBuilder::addText(CodeText text) {
    code_.texts.push_back(text);
    return static_cast<std::uint32_t>(code_.texts.size() - 1);
}

void CodeBuilder::emitJump(Jumps& jumps, Operation operation, Operands operands) {
    jumps.push_back(here());
    emit(operation, operands);
}

void CodeBuilder::emitJumpBack(Operation operation, std::uint32_t target) {
    emit(operation);
    code_.instructions.back().distance = distance(here() - 1, target);
}

void CodeBuilder::land(Jumps& jumps) {
    for (const std::uint32_t jump : jumps) code_.instructions[jump].distance = distance(jump, here());
    jumps.clear();
}

Place* CodeBuilder::constant(const Variable& value) {
    Place*& known = constants_[{value.type(), value.identity()}];
    if (!known) known = &code_.constants.emplace_back(value);
    return known;
}

Place* CodeBuilder::newTemporary() {
    if (held_.size() == temporaryCount) throw std::logic_error("An expression needs too many temporaries");
    held_.push_back(false);
    return &temporaries_[held_.size() - 1];
}

Place* CodeBuilder::hold(Place* temporary) {
    held_[static_cast<std::size_t>(static_cast<ValuePlace*>(temporary) - temporaries_)] = true;
    return temporary;
}

Place* CodeBuilder::operand(const FastExprNode& node, bool isKept) {
    switch (node.kind) {
        case FastExprNodeKind::Constant:
            return constant(node.constant);
        case FastExprNodeKind::Variable:
            if (!isKept) return cell(node.name);
            break;
        case FastExprNodeKind::Identity:
            return operand(node.leftNode(), isKept);
        default:
            break;
    }
    Place* const temporary = newTemporary();
    evaluateInto(node, temporary);
    return hold(temporary);
}

void CodeBuilder::evaluateInto(const FastExprNode& node, Place* target) {
    const std::size_t before = mark();
    switch (node.kind) {
        case FastExprNodeKind::Constant:
        case FastExprNodeKind::Variable:
            emit(Operation::Copy, {.a = target, .b = operand(node)});
            break;
        case FastExprNodeKind::ScopedVariable:
            emit(Operation::ReadScoped, {.a = target, .b = cell(node.name), .number = node.scope});
            break;
        case FastExprNodeKind::Varargs:
            emit(Operation::Varargs, {.a = target});
            break;
        case FastExprNodeKind::Index: {
            Place* const container = operand(node.leftNode(), node.rightNode().mayCall);
            Place* const key = operand(node.rightNode());
            emit(Operation::Element, {.a = target, .b = container, .c = key});
            break;
        }
        case FastExprNodeKind::Call:
            callFor(node, target);
            break;
        case FastExprNodeKind::Identity:
            evaluateInto(node.leftNode(), target);
            break;
        case FastExprNodeKind::Negate:
            emit(Operation::Negate, {.a = target, .b = operand(node.leftNode())});
            break;
        case FastExprNodeKind::Not:
            emit(Operation::Not, {.a = target, .b = operand(node.leftNode())});
            break;
        case FastExprNodeKind::Length:
            emit(Operation::Length, {.a = target, .b = operand(node.leftNode())});
            break;
        case FastExprNodeKind::Binary: {
            const auto [left, right] = operands(node);
            const Operation operation =
                node.isComparison() ? Operation::Compare : arithmeticOf(node.operation);
            emit(operation, {.a = target, .b = left, .c = right, .kind = node.operation});
            takeInteger(code_.instructions.back(), node.rightNode());
            break;
        }
        case FastExprNodeKind::And:
        case FastExprNodeKind::Or:
            logical(node, target);
            break;
        case FastExprNodeKind::Array:
            array(node, target);
            break;
        case FastExprNodeKind::Table:
            table(node, target);
            break;
        case FastExprNodeKind::KeyEntry:  // read by its table
            break;
    }
    release(before);
}

void CodeBuilder::logical(const FastExprNode& node, Place* target) {
    Place* const value = isTemporary(target) && target != next() ? target : newTemporary();
    Jumps decided;
    evaluateInto(node.leftNode(), value);
    emitJump(decided, node.kind == FastExprNodeKind::Or ? Operation::KeepIf : Operation::KeepUnless,
             {.b = value});
    evaluateInto(node.rightNode(), value);
    land(decided);
    if (value != target) emit(Operation::Take, {.a = target, .b = value});
}

void CodeBuilder::push(const FastExprNode& node) {
    const FastExprNode& plain = withoutIdentity(node);
    if (plain.kind == FastExprNodeKind::Constant || plain.kind == FastExprNodeKind::Variable)
        return emit(Operation::Push, {.b = operand(plain)});
    const std::size_t before = mark();
    evaluateInto(plain, next());
    if (plain.kind != FastExprNodeKind::Binary || !pushResult(code_.instructions.back(), newTemporary()))
        emit(Operation::Keep);
    release(before);
}

std::pair<Place*, Place*> CodeBuilder::operands(const FastExprNode& node) {
    if (!node.rightNode().mayCall) {
        Place* const left = operand(node.leftNode());
        return {left, operand(node.rightNode())};
    }
    push(node.leftNode());
    Place* const right = operand(node.rightNode());
    emit(Operation::Retake);
    return {next(), right};
}

void CodeBuilder::callFor(const FastExprNode& node, Place* result) {
    const std::size_t before = mark();
    std::vector<Place*> kept;
    for (std::size_t i = 0; i < held_.size(); ++i) {
        if (!held_[i]) continue;
        held_[i] = false;
        kept.push_back(&temporaries_[i]);
        emit(Operation::PushTaken, {.b = kept.back()});
    }

    bool argumentsCall = false;
    const FastExprNode* argument = &node.rightNode();
    for (std::uint32_t i = 0; i < node.count; ++i, argument = &argument->nextNode())
        argumentsCall = argumentsCall || argument->mayCall;
    // What is called is settled before the arguments run.
    const FastExprNode& left = withoutIdentity(node.leftNode());
    Operation call = Operation::CallPushed;
    Place* callee = nullptr;
    if (isNamedElement(left)) {
        Place* const container = operand(left.leftNode());
        emit(Operation::Member, {.b = container, .c = constant(left.rightNode().constant)});
        call = Operation::CallMember;
    } else if (left.kind == FastExprNodeKind::Variable && !argumentsCall) {
        callee = cell(left.name);
        call = Operation::Call;
    } else {
        push(left);
    }
    argument = &node.rightNode();
    for (std::uint32_t i = 0; i < node.count; ++i, argument = &argument->nextNode()) push(*argument);
    // What was kept stands on the stack where the result would go.
    const bool isOnItsWay = !result || (result == next() && !kept.empty());
    Place* const given = isOnItsWay ? newTemporary() : result;
    emitCalling(call, {.a = given,
                       .b = callee,
                       .number = node.count,
                       .flags = result ? std::uint8_t{0} : CallFlags::dropsResult});
    release(before);

    for (std::size_t i = kept.size(); i-- > 0;) emit(Operation::Pop, {.a = hold(kept[i])});
    if (result && given != result) emit(Operation::Take, {.a = result, .b = given});
}

// Long ones are made in parts, which the stack has room for.
void CodeBuilder::array(const FastExprNode& node, Place* target) {
    constexpr std::uint32_t partLength = 4096;
    Place* const made = hold(newTemporary());
    const FastExprNode* item = &node.rightNode();
    std::uint32_t pushed = 0;
    emit(Operation::NewArray, {.a = made, .number = node.count});
    for (std::uint32_t i = 0; i < node.count; ++i, item = &item->nextNode()) {
        push(*item);
        if (++pushed < partLength && i + 1 < node.count) continue;
        emit(Operation::AddItems, {.a = made, .number = pushed});
        pushed = 0;
    }
    emit(Operation::Take, {.a = target, .b = made});
}

void CodeBuilder::table(const FastExprNode& node, Place* target) {
    Place* const made = newTemporary();
    emit(Operation::NewTable, {.a = made, .number = node.count});
    hold(made);
    std::int32_t position = 0;
    const FastExprNode* entry = &node.rightNode();
    for (std::uint32_t i = 0; i < node.count; ++i, entry = &entry->nextNode()) {
        const std::size_t before = mark();
        Place* key = nullptr;
        const FastExprNode* value = entry;
        if (entry->kind == FastExprNodeKind::KeyEntry) {
            value = &entry->rightNode();
            key = operand(entry->leftNode(), value->mayCall);
            // One that is none is refused before the value is made.
            const bool isSound =
                entry->leftNode().kind == FastExprNodeKind::Constant &&
                (entry->leftNode().constant.isString() || entry->leftNode().constant.isInt());
            if (!isSound) emit(Operation::CheckKey, {.b = key});
        } else {
            key = constant(Variable::integer(++position));
        }
        Place* const stored = operand(*value);
        emit(Operation::SetEntry, {.a = made, .b = key, .c = stored});
        release(before);
    }
    emit(Operation::Take, {.a = target, .b = made});
}

void CodeBuilder::test(const FastExprNode& node, bool when, Jumps& jumps) {
    const std::size_t before = mark();
    if (node.kind == FastExprNodeKind::Not) {
        test(node.leftNode(), !when, jumps);
    } else if (node.kind == FastExprNodeKind::And || node.kind == FastExprNodeKind::Or) {
        const bool decides = node.kind == FastExprNodeKind::Or;  // what ends it with the left side
        if (when == decides) {
            test(node.leftNode(), when, jumps);
            test(node.rightNode(), when, jumps);
        } else {
            Jumps decided;
            test(node.leftNode(), decides, decided);
            test(node.rightNode(), when, jumps);
            land(decided);
        }
    } else if (node.isComparison()) {
        const auto [left, right] = operands(node);
        emitJump(jumps, jumpOf(node.operation, when), {.b = left, .c = right});
        takeInteger(code_.instructions.back(), node.rightNode());
    } else {
        emitJump(jumps, when ? Operation::JumpIf : Operation::JumpUnless, {.b = operand(node)});
    }
    release(before);
}

}  // namespace kelmora
