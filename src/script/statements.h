#pragma once

#include "script/operators.h"
#include "script/parsed_header.h"
#include "script/table_object.h"
#include "script/vesper_script.h"

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
void VesperScript::runNumericFor(const ParsedScriptLine& line, Body&& body) {
    const ForBounds bounds = evaluateForBounds(line);
    if (shouldAbortForSoftRaisedError()) return;
    if (bounds.step == 0) throw std::runtime_error("for loop step must not be 0");
    const LoopScope loop(scopes_, line.forHeader->names);
    std::int32_t value = bounds.start;
    while (bounds.step > 0 ? value <= bounds.stop : value >= bounds.stop) {
        scopes_.callEntry(loop.scope(), 0) = Variable::integer(value);
        if (!body()) return;
        value = static_cast<std::int32_t>(static_cast<std::uint32_t>(value) +
                                          static_cast<std::uint32_t>(bounds.step));
    }
}

template <typename Body>
void VesperScript::walkGenericFor(const ParsedScriptLine& line, Body&& body) {
    const ParsedFor& header = *line.forHeader;
    throwHeaderFault(line, header.fault);
    const LoopScope loop(scopes_, header.names);
    if (isBuiltinWalk(line)) {
        const Variable container =
            evaluateRange(line, header.argument, "Unexpected token after for iterator");
        if (shouldAbortForSoftRaisedError()) return;
        if (header.builtin == BuiltinId::Pairs && container.isTable()) {
            walkPairs(header, loop.scope(), container, body);
        } else if (container.isTable() || container.isArray()) {
            walkSequence(header, loop.scope(), container, true, body);
        } else {
            throw std::runtime_error(header.builtin == BuiltinId::Pairs
                                         ? "pairs(container) expects an array or table"
                                         : "ipairs(container) expects an array or table");
        }
        return;
    }
    const Variable iterator = evaluateRange(line, header.iterator, "Unexpected token after for iterator");
    if (shouldAbortForSoftRaisedError()) return;
    if (!iterator.isArray() && !iterator.isMulti())
        throw std::runtime_error("generic for loops expect an array iterator");
    walkSequence(header, loop.scope(), iterator, false, body);
}

template <typename Body>
void VesperScript::walkPairs(const ParsedFor& header, CallScope scope, const Variable& container,
                             Body&& body) {
    const TableObject& table = container.table();
    const auto keys = table.sortedKeys();
    for (std::size_t i = 0; i < keys->keys.size(); ++i) {
        const Variable* value = table.findListed(*keys, i);
        if (!value) continue;  // erased by the body
        bindPair(header, scope, keys->keyValues[i], *value);
        if (!body()) return;
    }
}

// Arrays, multi values, and the numbered part of tables. The length is read anew in each round.
template <typename Body>
void VesperScript::walkSequence(const ParsedFor& header, CallScope scope, const Variable& sequence,
                                bool withKeys, Body&& body) {
    const auto length = [&] {
        if (sequence.isTable()) return sequence.table().numericLength();
        return sequence.isArray() ? sequence.items().size() : sequence.values().size();
    };
    for (std::size_t i = 0; i < length(); ++i) {
        const Variable& element = sequence.isTable()   ? sequence.table().denseValues()[i]
                                  : sequence.isArray() ? sequence.items()[i]
                                                       : sequence.values()[i];
        if (withKeys) {
            bindPair(header, scope, Variable::integer(static_cast<std::int32_t>(i + 1)), element);
        } else {
            bindElement(header, scope, element);
        }
        if (!body()) return;
    }
}

}  // namespace kelmora
