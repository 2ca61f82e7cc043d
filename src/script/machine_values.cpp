#include <stdexcept>

#include "script/indexing.h"
#include "script/machine.h"
#include "script/numbers.h"
#include "script/operators.h"
#include "script/parsed_header.h"
#include "script/table_object.h"

// The general ways of the instructions that call nothing.
namespace kelmora {
namespace {

bool compareValues(TokenKind operation, const Variable& left, const Variable& right) {
    switch (operation) {
        case TokenKind::Equal:
            return left.isFloat() && right.isFloat() ? left.floatValue() == right.floatValue()
                                                     : variablesEqual(left, right);
        case TokenKind::NotEqual:
            return left.isFloat() && right.isFloat() ? left.floatValue() != right.floatValue()
                                                     : !variablesEqual(left, right);
        case TokenKind::Less:
            return compareVariables(left, right) < 0;
        case TokenKind::Greater:
            return compareVariables(left, right) > 0;
        case TokenKind::LessEqual:
            return compareVariables(left, right) <= 0;
        default:
            return compareVariables(left, right) >= 0;
    }
}

}  // namespace

// --- Values ---

void Machine::move(const Instruction* i) {
    enterSite(i);
    store(i->a, takeB(i));
}

void Machine::keepFirst(const Instruction* i) {
    Variable& value = *i->a->value;
    if (!value.isMulti()) return;
    const Variable multi = std::move(value);
    value = multi.values().empty() ? Variable() : multi.values()[0];
}

// A multi value is dealt out among the names.
void Machine::deal(const Instruction* i) {
    enterSite(i);
    const Variable value = takeB(i);
    const std::span<const Variable> dealt = value.isMulti() ? value.values() : std::span(&value, 1);
    const ParsedScriptLine& line = lineOf(i);
    std::size_t next = 0;
    for (const ParsedAssignmentTarget& target : line.assignment->targets) {
        Cell& name = script_.scopes.cell(line.analysis[target.tokenIndex].name);
        Variable part = next < dealt.size() ? dealt[next] : Variable();
        ++next;
        if (i->flags) {
            script_.scopes.setLocal(name, std::move(part));
        } else {
            script_.scopes.assignDefault(name, std::move(part));
        }
    }
}

void Machine::readScoped(const Instruction* i) {
    enterSite(i);
    const Variable* const found =
        script_.scopes.findExplicit(static_cast<const Cell*>(i->b)->name, static_cast<int>(i->number));
    store(i->a, found ? Variable(*found) : Variable());
}

void Machine::makeVarargs(const Instruction* i) {
    enterSite(i);
    if (script_.varargs.empty()) script_.context.throwError("Unknown token: ...", "...");
    store(i->a, Variable::makeMulti(script_.varargs.back()));
}

void Machine::operate(const Instruction* i) {
    enterSite(i);
    const Variable& left = read(i, i->b);
    const Variable& right = read(i, i->c);
    if (left.isFloat() && right.isFloat()) {
        const float a = left.floatValue();
        const float b = right.floatValue();
        if (i->kind == TokenKind::Plus) return store(i->a, Variable::number(a + b));
        if (i->kind == TokenKind::Minus) return store(i->a, Variable::number(a - b));
        if (i->kind == TokenKind::Multiply) return store(i->a, Variable::number(a * b));
    }
    // A text that was built on the way to a longer one is lengthened where it stands.
    const bool lengthens = i->kind == TokenKind::Plus && (i->temporaries & Instruction::usesUpB) &&
                           left.isString() && !left.stringObject().isShared();
    Variable result;
    if (lengthens) {
        appendInPlace(*i->b->value, right);
        result = std::move(*i->b->value);
    } else {
        result = performOperation(left, i->kind, right);
    }
    useUp(*i);
    store(i->a, std::move(result));
}

void Machine::update(const Instruction* i) {
    enterSite(i);
    const Variable& value = read(i, i->b);
    Variable* const target = script_.scopes.find(*static_cast<Cell*>(i->a));
    if (!target) script_.throwVariableNotFound(lineOf(i), lineOf(i).assignment->targets[0]);
    updateInPlace(*target, i->kind, value);
    useUp(*i);
}

void Machine::negate(const Instruction* i) {
    enterSite(i);
    const Variable& value = read(i, i->b);
    if (value.isFloat()) return store(i->a, Variable::number(-value.floatValue()));
    if (!value.isNumeric()) script_.context.throwError("Unary '-' requires a numeric value", "-");
    store(i->a, Variable::integer(static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(toInt(value)))));
}

void Machine::invert(const Instruction* i) {
    store(i->a, Variable::boolean(!test(i)));
}

void Machine::measure(const Instruction* i) {
    enterSite(i);
    const std::int32_t length = arrayLength(read(i, i->b));
    useUp(*i);
    store(i->a, Variable::integer(length));
}

bool Machine::compare(const Instruction* i, TokenKind comparison) {
    enterSite(i);
    const bool result = compareValues(comparison, read(i, i->b), read(i, i->c));
    useUp(*i);
    return result;
}

void Machine::compareInto(const Instruction* i) {
    store(i->a, Variable::boolean(compare(i, i->kind)));
}

bool Machine::test(const Instruction* i) {
    enterSite(i);
    const bool result = isTruthy(read(i, i->b));
    useUp(*i);
    return result;
}

void Machine::element(const Instruction* i) {
    enterSite(i);
    const Variable& container = read(i, i->b);
    const Variable& key = read(i, i->c);
    const Variable* const found = findElement(container, key);
    Variable result = found ? *found : script_.getIndexedValue(container, key);
    useUp(*i);
    store(i->a, std::move(result));
}

void Machine::member(const Instruction* i) {
    enterSite(i);
    const Variable& container = read(i, i->b);
    const Variable& name = *i->c->value;
    if (container.isString()) {
        const Variable* const method = script_.findStringMethod(name);
        Variable subject = takeB(i);
        script_.scopes.calls().push(method ? *method : Variable());
        script_.scopes.calls().push(method ? std::move(subject) : Variable());
        return;
    }
    const Variable* const found = findElement(container, name);
    Variable result = found ? *found : script_.getIndexedValue(container, name);
    useUp(*i);
    script_.scopes.calls().push(std::move(result));
    script_.scopes.calls().push(Variable());
}

void Machine::setElement(const Instruction* i) {
    enterSite(i);
    const Variable key = takeB(i);
    Cell& name = *static_cast<Cell*>(i->a);
    Variable* const container = script_.scopes.find(name);
    if (container && container->isTable()) {
        container->table().set(tableKeyOf(key), takeC(i));
        return;
    }
    if (Variable* const item = container ? findElementMutable(*container, key) : nullptr) {
        *item = takeC(i);
        return;
    }
    TokenAnalysis token;
    token.kind = TokenKind::Identifier;
    token.name = name.name;
    script_.storeKeyed(token, ScopeTarget::Default, {&key, 1}, takeC(i));
}

void Machine::updateElement(const Instruction* i) {
    enterSite(i);
    const Variable key = takeB(i);
    Variable value = takeC(i);
    const Variable* const container = script_.scopes.find(*static_cast<Cell*>(i->a));
    if (Variable* const found = container ? findElementMutable(*container, key) : nullptr) {
        updateInPlace(*found, i->kind, value);
        return;
    }
    const ParsedAssignment& assignment = *lineOf(i).assignment;
    script_.updateKeyed(lineOf(i), assignment, assignment.targets[0], {&key, 1}, std::move(value));
}

void Machine::addItems(const Instruction* i) {
    BindingStack<BindingLink>& stack = script_.scopes.calls();
    std::vector<Variable>& items = i->a->value->items();
    for (Variable* value = stack.top() - i->number; value != stack.top(); ++value)
        items.push_back(std::move(*value));
    stack.drop(i->number);
}

void Machine::checkKey(const Instruction* i) {
    enterSite(i);
    static_cast<void>(tableKeyOf(read(i, i->b)));
}

void Machine::setEntry(const Instruction* i) {
    enterSite(i);
    const Variable key = takeB(i);
    i->a->value->table().set(tableKeyOf(key), takeC(i));
}

void Machine::pushOther(const Instruction* i) {
    enterSite(i);
    script_.scopes.calls().push(read(i, i->b));
}

// --- Lines ---

void Machine::runLine(const Instruction* i) {
    enterSite(i);
    const ParsedScriptLine& line = lineOf(i);
    if (!script_.executeAssignment(line, nullptr)) script_.executeExpressionStatement(line);
}

void Machine::testLine(const Instruction* i) {
    enterSite(i);
    const bool result = script_.evaluateCondition(lineOf(i), code_->texts[i->number].text);
    *i->a->value = Variable::boolean(result);
}

void Machine::returnLine(const Instruction* i) {
    enterSite(i);
    Variable value = script_.evaluateReturn(lineOf(i));
    *i->a->value = std::move(value);
}

void Machine::declare(const Instruction* i) {
    enterSite(i);
    const FunctionDeclaration& declaration = code_->program->functionDeclarations[i->number];
    const ParsedScriptLine& line = lineOf(i);
    script_.throwHeaderFault(line, line.functionHeader->fault);
    const Variable function = script_.makeDeclaredCallable(line);
    ScriptCallable& callable = function.function();
    callable.setProgram(code_->program->shared_from_this(), declaration.bodyChunk);
    callable.source = declaration.source;
    script_.labels.registerCallable(callable);
    script_.bindFunction(line, function);
}

// --- Blocks and loops. What they remember lies on the stack. ---

void Machine::openBlock(const Instruction* i) {
    script_.scopes.calls().push(
        Variable::integer(static_cast<std::int32_t>(script_.scopes.localScopeCount())));
    if (i->flags & BlockFlags::holdsLabels) script_.openParts.push({code_->program, i->number});
    const bool joins = !(i->flags & BlockFlags::keepsScope) && script_.scopes.hasVisibleLocalScope();
    if ((i->flags & BlockFlags::opensScope) || joins) script_.scopes.pushLocalScope();
}

void Machine::closeBlock(const Instruction* i) {
    const Variable count = script_.scopes.calls().pop();
    if (i->flags & BlockFlags::holdsLabels) script_.openParts.drop();
    script_.scopes.popLocalScopesTo(static_cast<std::uint32_t>(count.intValue()));
}

// Last number, step and current number of a loop, under its variable.
void Machine::pushLoop(const ParsedFor& header, const NumericLoop& loop) {
    BindingStack<BindingLink>& stack = script_.scopes.calls();
    stack.push(Variable::integer(loop.stop));
    stack.push(Variable::integer(loop.step));
    stack.push(Variable::integer(loop.value));
    Variable& variable = stack.push(Variable());
    if (!header.names.empty()) script_.scopes.nameCallEntry(variable, script_.scopes.cell(header.names[0]));
}

void Machine::openFor(const Instruction* i) {
    enterSite(i);
    NumericLoop loop;
    loop.value = toInt(read(i, i->a));
    loop.stop = toInt(read(i, i->b));
    loop.step = i->c ? toInt(read(i, i->c)) : 1;
    if (i->temporaries & Instruction::usesUpA) dropValue(*i->a->value);
    useUp(*i);
    if (loop.step == 0) throw std::runtime_error("for loop step must not be 0");
    pushLoop(*lineOf(i).forHeader, loop);
}

void Machine::openForLine(const Instruction* i) {
    enterSite(i);
    const NumericLoop loop = script_.openNumericLoop(lineOf(i));
    if (!aborted()) pushLoop(*lineOf(i).forHeader, loop);
}

void Machine::openWalk(const Instruction* i) {
    enterSite(i);
    const ParsedScriptLine& line = lineOf(i);
    script_.throwHeaderFault(line, line.forHeader->fault);
    const CallScope scope = script_.scopes.pushCallScope(line.forHeader->names);
    SequenceWalk walk = script_.openSequenceWalk(line);
    if (script_.walkCount == script_.walks.size()) script_.walks.emplace_back();
    script_.walks[script_.walkCount++] = {std::move(walk), scope};
    script_.openParts.push({nullptr, 0});
}

void Machine::closeWalk() {
    script_.closePart();
    script_.scopes.popCallScope(script_.walks[script_.walkCount].scope);
}

void Machine::fail(const Instruction* i) {
    enterSite(i);
    const CodeText& text = code_->texts[i->number];
    if (text.token) script_.context.throwError(text.text, text.token);
    throw std::runtime_error(text.text);
}

}  // namespace kelmora
