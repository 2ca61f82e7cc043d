#include "script/scopes.h"

namespace kelmora {

Scopes::Cell& Scopes::cellFor(NameId name) {
    if (name >= cells_.size()) cells_.resize(name + std::size_t{1});
    return cells_[name];
}

Variable* Scopes::findIn(Scope& scope, NameId name) {
    for (auto& [entryName, value] : scope)
        if (entryName == name) return &value;
    return nullptr;
}

Variable* Scopes::findNative(NameId name) {
    return nativeLevel_ < nativeScopes_.size() ? findIn(nativeScopes_[nativeLevel_], name) : nullptr;
}

Variable* Scopes::findExplicit(NameId name, int scope) {
    if (scope == 0) return findIn(externalScope_, name);
    if (scope == 2) return findNative(name);
    if (name >= cells_.size()) return nullptr;
    Cell& cell = cells_[name];
    if (scope == 1) return cell.defined ? &cell.global : nullptr;
    return cell.newestLocal >= visibleLocals_ ? &locals_[static_cast<std::size_t>(cell.newestLocal)].value
                                              : nullptr;
}

void Scopes::setGlobal(NameId name, Variable value) {
    Cell& cell = cellFor(name);
    cell.global = std::move(value);
    cell.defined = true;
}

void Scopes::setLocal(NameId name, Variable value) {
    if (!hasVisibleLocalScope()) pushLocalScope();
    const Cell& cell = cellFor(name);
    if (cell.newestLocal >= localScopes_.back()) {
        locals_[static_cast<std::size_t>(cell.newestLocal)].value = std::move(value);
    } else {
        bind(locals_, &Cell::newestLocal, name, std::move(value));
    }
}

void Scopes::setNative(NameId name, Variable value) {
    if (nativeLevel_ >= nativeScopes_.size()) nativeScopes_.resize(nativeLevel_ + std::size_t{1});
    if (Variable* existing = findNative(name)) {
        *existing = std::move(value);
        return;
    }
    nativeScopes_[nativeLevel_].emplace_back(name, std::move(value));
    ++cellFor(name).nativeEntries;
}

void Scopes::setExternal(NameId name, Variable value) {
    if (Variable* existing = findIn(externalScope_, name)) {
        *existing = std::move(value);
    } else {
        externalScope_.emplace_back(name, std::move(value));
    }
}

void Scopes::setExplicit(NameId name, int scope, Variable value) {
    switch (scope) {
        case 0:
            setExternal(name, std::move(value));
            break;
        case 1:
            setGlobal(name, std::move(value));
            break;
        case 2:
            setNative(name, std::move(value));
            break;
        default:
            if (Variable* existing = findExplicit(name, 3)) {
                *existing = std::move(value);
            } else {
                setLocal(name, std::move(value));
            }
            break;
    }
}

void Scopes::commitExternals() {
    Scope entries = std::exchange(externalScope_, {});
    for (auto& [name, value] : entries) setGlobal(name, std::move(value));
}

void Scopes::bind(std::vector<Binding>& stack, BindingIndex Cell::*newest, NameId name, Variable value) {
    Cell& cell = cellFor(name);
    stack.push_back({name, cell.*newest, std::move(value)});
    cell.*newest = bindingCount(stack) - 1;
}

void Scopes::pushCallScope(std::span<const NameId> names, std::span<const Variable> values) {
    openCallScope();
    for (std::size_t i = 0; i < names.size(); ++i) addArgument(i < values.size() ? values[i] : Variable());
    nameArguments(names);
}

void Scopes::nameArguments(std::span<const NameId> names) {
    const BindingIndex first = callScopes_.back();
    const std::size_t size = static_cast<std::size_t>(first) + names.size();
    if (calls_.size() != size) calls_.resize(size, {noName, none, {}});
    for (std::size_t i = 0; i < names.size(); ++i) {
        Cell& cell = cellFor(names[i]);
        if (cell.newestCall >= first) continue;  // a repeated name
        const BindingIndex place = first + static_cast<BindingIndex>(i);
        Binding& binding = calls_[static_cast<std::size_t>(place)];
        binding.name = names[i];
        binding.shadowed = cell.newestCall;
        cell.newestCall = place;
    }
}

std::vector<std::pair<NameId, const Variable*>> Scopes::definedGlobals() const {
    std::vector<std::pair<NameId, const Variable*>> globals;
    for (NameId name = 0; name < cells_.size(); ++name)
        if (cells_[name].defined) globals.emplace_back(name, &cells_[name].global);
    return globals;
}

void Scopes::detach(const std::vector<Binding>& stack, BindingIndex Cell::*newest) {
    for (auto binding = stack.rbegin(); binding != stack.rend(); ++binding)
        if (binding->name != noName) cells_[binding->name].*newest = binding->shadowed;
}

void Scopes::attach(std::vector<Binding>& stack, BindingIndex Cell::*newest) {
    for (std::size_t i = 0; i < stack.size(); ++i)
        if (stack[i].name != noName) cellFor(stack[i].name).*newest = static_cast<BindingIndex>(i);
}

void Scopes::exchangeFrames(Frames& frames) {
    detach(locals_, &Cell::newestLocal);
    detach(calls_, &Cell::newestCall);
    locals_.swap(frames.locals);
    calls_.swap(frames.calls);
    localScopes_.swap(frames.localScopes);
    callScopes_.swap(frames.callScopes);
    std::swap(localBase_, frames.localBase);
    std::swap(visibleLocals_, frames.visibleLocals);
    std::swap(nativeLevel_, frames.nativeLevel);
    attach(locals_, &Cell::newestLocal);
    attach(calls_, &Cell::newestCall);
}

}  // namespace kelmora
