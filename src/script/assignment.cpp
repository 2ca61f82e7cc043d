#include "script/argument_list.h"
#include "script/interpreter.h"
#include "script/numbers.h"
#include "script/operators.h"

namespace kelmora {
namespace {

// A container that does not exist yet is born as an array when its first key is a position.
Variable makeContainerFor(const Variable& key) {
    std::int64_t index = 0;
    return isWholeIndex(key, index) && index > 0 ? Variable::makeArray() : Variable::makeTable();
}

}  // namespace

bool Interpreter::executeAssignment(const ParsedScriptLine& line, Variable* result) {
    if (!line.assignment) return false;
    const ParsedAssignment& assignment = *line.assignment;
    constexpr std::string_view leftover = "Unexpected token in assignment expression";
    if (result) *result = Variable();
    if (assignment.targets.size() == 1 && assignment.values.size() == 1) {
        Variable value = evaluateRange(line, assignment.values[0], leftover);
        if (shouldAbortForSoftRaisedError()) return true;
        if (assignment.valueIsSingleCall && value.isMulti()) {
            const Variable multi = std::move(value);
            value = multi.values().empty() ? Variable() : multi.values()[0];
        }
        assignTarget(line, assignment, assignment.targets[0], std::move(value), result);
        return true;
    }

    ArgumentList values;
    for (const PreparedExpression& range : assignment.values) {
        values.push(evaluateRange(line, range, leftover));
        if (shouldAbortForSoftRaisedError()) return true;
    }
    // With several targets a lone multi value is dealt out; with one, a call gives its first value.
    std::span<const Variable> dealt = values.span();
    if (dealt.size() == 1 && dealt[0].isMulti() &&
        (assignment.targets.size() > 1 || assignment.valueIsSingleCall))
        dealt = dealt[0].values();
    for (std::size_t i = 0; i < assignment.targets.size(); ++i) {
        assignTarget(line, assignment, assignment.targets[i], i < dealt.size() ? dealt[i] : Variable(),
                     result);
        if (shouldAbortForSoftRaisedError()) return true;
    }
    return true;
}

void Interpreter::assignTarget(const ParsedScriptLine& line, const ParsedAssignment& assignment,
                               const ParsedAssignmentTarget& target, Variable value, Variable* result) {
    if (!target.keys.empty()) {
        assignKeyed(line, assignment, target, std::move(value), result);
        return;
    }
    const TokenAnalysis& name = line.analysis[target.tokenIndex];
    if (assignment.operation == TokenKind::Assign) {
        if (result) *result = value;
        storePlain(name, assignment.scopeTarget, std::move(value));
        return;
    }
    Variable* existing = resolveTarget(name, assignment.scopeTarget);
    if (!existing) throwVariableNotFound(line, target);
    updateInPlace(*existing, compoundOperation(assignment.operation), value);
    if (result) *result = *existing;
}

void Interpreter::throwVariableNotFound(const ParsedScriptLine& line, const ParsedAssignmentTarget& target) {
    const std::string& text = line.tokens[target.tokenIndex];
    context.throwError("Variable not found: " + text, text);
}

void Interpreter::storePlain(const TokenAnalysis& name, ScopeTarget target, Variable value) {
    switch (target) {
        case ScopeTarget::Local:
            scopes.setLocal(name.name, std::move(value));
            return;
        case ScopeTarget::Native:
            scopes.setNative(name.name, std::move(value));
            return;
        case ScopeTarget::External:
            scopes.setExternal(name.name, std::move(value));
            return;
        default:
            break;
    }
    if (name.isScoped()) {
        scopes.setExplicit(name.name, name.scope, std::move(value));
    } else {
        scopes.assignDefault(name.name, std::move(value));
    }
}

// The variable that a compound or keyed assignment changes; nil counts as missing for neither of them here.
Variable* Interpreter::resolveTarget(const TokenAnalysis& name, ScopeTarget target) {
    if (target == ScopeTarget::External) return scopes.findExplicit(name.name, 0);
    if (target == ScopeTarget::Native) return scopes.findExplicit(name.name, 2);
    if (target == ScopeTarget::Local) return scopes.findExplicit(name.name, 3);
    return name.isScoped() ? scopes.findExplicit(name.name, name.scope) : scopes.findMutable(name.name);
}

void Interpreter::assignKeyed(const ParsedScriptLine& line, const ParsedAssignment& assignment,
                              const ParsedAssignmentTarget& target, Variable value, Variable* result) {
    const TokenAnalysis& name = line.analysis[target.tokenIndex];
    ArgumentList keyList;
    for (const PreparedExpression& key : target.keys) {
        keyList.push(evaluateRange(line, key, "Expected closing bracket"));
        if (shouldAbortForSoftRaisedError()) return;
    }
    if (assignment.operation != TokenKind::Assign) {
        Variable updated = updateKeyed(line, assignment, target, keyList.span(), std::move(value));
        if (result) *result = std::move(updated);
        return;
    }
    storeKeyed(name, assignment.scopeTarget, keyList.span(), value);
    if (result) *result = std::move(value);
}

Variable Interpreter::updateKeyed(const ParsedScriptLine& line, const ParsedAssignment& assignment,
                                  const ParsedAssignmentTarget& target, std::span<const Variable> keys,
                                  Variable value) {
    const TokenAnalysis& name = line.analysis[target.tokenIndex];
    const Variable* existing = resolveTarget(name, assignment.scopeTarget);
    if (!existing || existing->isNot()) throwVariableNotFound(line, target);
    Variable current = *existing;
    for (const Variable& key : keys) current = getIndexedValue(current, key);
    updateInPlace(current, compoundOperation(assignment.operation), value);
    storeKeyed(name, assignment.scopeTarget, keys, current);
    return current;
}

void Interpreter::storeKeyed(const TokenAnalysis& name, ScopeTarget target, std::span<const Variable> keys,
                             const Variable& value) {
    Variable* container = resolveTarget(name, target);
    if (!container || container->isNot()) {
        storePlain(name, target, makeContainerFor(keys[0]));
        container = resolveTarget(name, target);
    }
    for (std::size_t i = 0; i + 1 < keys.size(); ++i) {
        if (getIndexedValue(*container, keys[i]).isNot())
            setIndexedValue(*container, keys[i], makeContainerFor(keys[i + 1]), true);
        container = getIndexedValueMutable(*container, keys[i], true);
    }
    setIndexedValue(*container, keys.back(), value, true);
}

}  // namespace kelmora
