#include <span>
#include <stdexcept>

#include "script/expression_walk.h"
#include "script/interpreter.h"
#include "script/line_parser.h"
#include "script/numbers.h"

namespace kelmora {

Variable Interpreter::evaluateExpression(const ParsedScriptLine& line, std::uint32_t& index) {
    return ExpressionWalk(*this, line, index).evaluate();
}

Variable Interpreter::evaluateRange(const ParsedScriptLine& line, const PreparedExpression& expression,
                                    std::string_view leftover) {
    if (expression.fast.valid() && fastExpressions) return runCode(expressionCode(expression.fast));
    std::uint32_t index = expression.first;
    Variable value = evaluateExpression(line, index);
    if (index != expression.last && !shouldAbortForSoftRaisedError())
        context.throwError(std::string(leftover), index < line.tokens.size() ? line.tokens[index] : "EOF");
    return value;
}

bool Interpreter::evaluateCondition(const ParsedScriptLine& line, std::string_view statement) {
    const PreparedExpression& expression = line.expression;
    if (expression.fast.valid() && fastExpressions) {
        const Variable value = runCode(expressionCode(expression.fast));
        return isTruthy(value) && !shouldAbortForSoftRaisedError();
    }
    std::uint32_t index = 1;
    const Variable value = evaluateExpression(line, index);
    if (shouldAbortForSoftRaisedError()) return false;
    if (index != line.tokens.size())
        context.throwError("Unexpected token after " + std::string(statement) + " condition",
                           line.tokens[index]);
    return isTruthy(value);
}

Variable Interpreter::executeExpressionStatement(const ParsedScriptLine& line) {
    return evaluateRange(line, line.expression, "Unexpected trailing token");
}

Variable Interpreter::evaluateReturn(const ParsedScriptLine& line) {
    constexpr std::string_view leftover = "Unexpected token after return value";
    const std::vector<PreparedExpression>& ranges = line.returnValues;
    if (ranges.empty()) return {};
    if (ranges.size() == 1) return evaluateRange(line, ranges[0], leftover);
    std::vector<Variable> values;
    values.reserve(ranges.size());
    for (const PreparedExpression& range : ranges) {
        values.push_back(evaluateRange(line, range, leftover));
        if (shouldAbortForSoftRaisedError()) return {};
    }
    return Variable::makeMulti(std::move(values));
}

void Interpreter::throwHeaderFault(const ParsedScriptLine& line, const HeaderFault& fault) {
    if (fault.message.empty()) return;
    context.throwError(std::string(fault.message),
                       fault.token < line.tokens.size() ? std::string_view(line.tokens[fault.token]) : "EOF");
}

NumericLoop Interpreter::openNumericLoop(const ParsedScriptLine& line) {
    constexpr std::string_view trailing = "Unexpected token after for clause";
    const std::vector<PreparedExpression>& clauses = line.forHeader->bounds;
    NumericLoop loop;
    const Variable start = evaluateRange(line, clauses[0], "Expected ',' after for start value");
    if (shouldAbortForSoftRaisedError()) return loop;
    if (clauses.size() < 2) context.throwError("Expected ',' after for start value", "EOF");
    const Variable stop = evaluateRange(line, clauses[1], trailing);
    if (shouldAbortForSoftRaisedError()) return loop;
    Variable step = Variable::integer(1);
    if (clauses.size() > 2) step = evaluateRange(line, clauses[2], trailing);
    if (shouldAbortForSoftRaisedError()) return loop;
    if (clauses.size() > 3) context.throwError(std::string(trailing), ",");
    loop.value = toInt(start);
    loop.stop = toInt(stop);
    loop.step = toInt(step);
    if (loop.step == 0) throw std::runtime_error("for loop step must not be 0");
    return loop;
}

SequenceWalk Interpreter::openSequenceWalk(const ParsedScriptLine& line) {
    const ParsedFor& header = *line.forHeader;
    SequenceWalk walk;
    walk.withKeys = isBuiltinWalk(line);
    walk.container = evaluateRange(line, walk.withKeys ? header.argument : header.iterator,
                                   "Unexpected token after for iterator");
    if (shouldAbortForSoftRaisedError()) return walk;
    const bool isTable = walk.container.isTable();
    if (!walk.withKeys) {
        if (!walk.container.isArray() && !walk.container.isMulti())
            throw std::runtime_error("generic for loops expect an array iterator");
    } else if (!isTable && !walk.container.isArray()) {
        throw std::runtime_error(header.builtin == BuiltinId::Pairs
                                     ? "pairs(container) expects an array or table"
                                     : "ipairs(container) expects an array or table");
    } else if (isTable && header.builtin == BuiltinId::Pairs) {
        walk.keys = walk.container.table().sortedKeys();
    }
    return walk;
}

bool Interpreter::isBuiltinWalk(const ParsedScriptLine& line) const {
    const ParsedFor& header = *line.forHeader;
    if (header.builtin == BuiltinId::None) return false;
    const Variable* function = scopes.find(line.analysis[header.iterator.first].name);
    return function && function->isFunction() && function->function().builtinId == header.builtin;
}

bool Interpreter::bindNext(const ParsedFor& header, CallScope scope, SequenceWalk& walk) {
    Variable key;
    Variable element;
    if (!walk.next(key, element)) return false;
    if (walk.withKeys) {
        bindPair(header, scope, std::move(key), std::move(element));
    } else {
        bindElement(header, scope, std::move(element));
    }
    return true;
}

void Interpreter::bindPair(const ParsedFor& header, CallScope scope, Variable key, Variable value) {
    if (header.names.size() == 1) {
        scope[0] = Variable::array({std::move(key), std::move(value)});
        return;
    }
    scope[0] = std::move(key);
    scope[1] = std::move(value);
    for (std::size_t i = 2; i < header.names.size(); ++i) scope[i] = Variable();
}

void Interpreter::bindElement(const ParsedFor& header, CallScope scope, Variable element) {
    if (header.names.size() == 1 || !element.isArray()) {
        scope[0] = std::move(element);
        for (std::size_t i = 1; i < header.names.size(); ++i) scope[i] = Variable();
        return;
    }
    const std::vector<Variable>& items = element.items();
    for (std::size_t i = 0; i < header.names.size(); ++i) scope[i] = i < items.size() ? items[i] : Variable();
}

namespace {

// As it is written: `Window["close"]`.
std::string declaredName(const ParsedScriptLine& line) {
    std::string name;
    for (std::size_t i = line.functionHeader->nameToken;
         i < line.tokens.size() && line.analysis[i].kind != TokenKind::OpenParenthesis; ++i)
        name += line.tokens[i];
    return name;
}

}  // namespace

Variable Interpreter::makeDeclaredCallable(const ParsedScriptLine& line) const {
    Variable function = Variable::function(new ScriptCallable);
    ScriptCallable& callable = function.function();
    callable.name = declaredName(line);
    callable.isDecay = line.kind == ParsedLineKind::DecayFunction;
    callable.isVariadic = line.functionHeader->isVariadic;
    callable.parameters = line.functionHeader->parameters;
    callable.nativeScopeIndex = scopes.nativeLevel();
    return function;
}

void Interpreter::fillDeclaredBody(ScriptCallable& callable, const ScriptCallable& owner,
                                   const std::vector<ParsedScriptLine>& lines, std::uint32_t line) {
    callable.source = owner.source;
    if (!owner.program) {
        const std::span body = std::span(lines).subspan(line + 1, lines[line].endIndex - line - 1);
        callable.body.assign(body.begin(), body.end());
        prepareParsedLines(callable.body);
        return;
    }
    for (const FunctionDeclaration& declaration : owner.program->functionDeclarations) {
        if (declaration.line != line) continue;
        callable.setProgram(owner.program, declaration.bodyChunk);
    }
    if (!callable.program) throw std::runtime_error("Bytecode function-declaration index out of range");
}

void Interpreter::bindFunction(const ParsedScriptLine& line, const Variable& function) {
    const ParsedFunctionHeader& header = *line.functionHeader;
    const TokenAnalysis& name = line.analysis[header.nameToken];
    ScopeTarget target = ScopeTarget::Default;
    if (line.kind == ParsedLineKind::NativeFunction) target = ScopeTarget::Native;
    if (line.kind == ParsedLineKind::LocalFunction) target = ScopeTarget::Local;
    if (header.keys.empty()) {
        storePlain(name, target, function);
        return;
    }
    std::vector<Variable> keys;
    for (const PreparedExpression& range : header.keys) {
        keys.push_back(evaluateRange(line, range, "Expected closing bracket in function target"));
        if (shouldAbortForSoftRaisedError()) return;
    }
    const Variable* existing = resolveTarget(name, target);
    if (!existing || existing->isNot()) storePlain(name, target, Variable::makeTable());
    storeKeyed(name, target, keys, function);
}

}  // namespace kelmora
