#pragma once

#include "script/interpreter.h"
#include "script/operators.h"
#include "script/parsed_header.h"
#include "script/table_object.h"

// Loop walks that the direct and the bytecode executor share. They are templates over the loop's body so
// that neither pays for a call through a pointer.
namespace kelmora {

// Pops the scope of a loop's variables on every way out.
class LoopScope {
public:
    LoopScope(Scopes& scopes, std::span<const NameId> names)
        : scopes_(scopes), scope_(scopes.pushCallScope(names)) {}
    LoopScope(const LoopScope&) = delete;
    LoopScope& operator=(const LoopScope&) = delete;
    ~LoopScope() { scopes_.popCallScope(scope_); }

    CallScope scope() const { return scope_; }

private:
    Scopes& scopes_;
    CallScope scope_;
};

template <typename Body>
void Interpreter::runNumericFor(const ParsedScriptLine& line, Body&& body) {
    NumericLoop loop = openNumericLoop(line);
    if (shouldAbortForSoftRaisedError()) return;
    const LoopScope scope(scopes, line.forHeader->names);
    while (loop.next()) {
        scopes.callEntry(scope.scope(), 0) = Variable::integer(loop.value);
        if (!body()) return;
    }
}

template <typename Body>
void Interpreter::walkGenericFor(const ParsedScriptLine& line, Body&& body) {
    throwHeaderFault(line, line.forHeader->fault);
    const LoopScope scope(scopes, line.forHeader->names);
    SequenceWalk walk = openSequenceWalk(line);
    if (shouldAbortForSoftRaisedError()) return;
    while (bindNext(*line.forHeader, scope.scope(), walk))
        if (!body()) return;
}

}  // namespace kelmora
