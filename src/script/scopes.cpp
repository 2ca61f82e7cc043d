#include "script/scopes.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace kelmora {
namespace {

// Levels follow the nesting of blocks, but a state file may claim any.
constexpr std::uint32_t maximumNativeLevel = 0xFFFF;

}  // namespace

void Scopes::growCells(NameId name) {
    const std::uint32_t count = std::max(name + 1, cellCount_ * 2);
    auto cells = std::make_unique<Cell[]>(count);
    std::move(cells_.get(), cells_.get() + cellCount_, cells.get());
    cells_ = std::move(cells);
    cellCount_ = count;
}

// Gives a call as many arguments as there are parameters.
void Scopes::fitArguments(BindingIndex end) {
    while (calls_.size() < end) addArgument(Variable());
    calls_.dropTo(end, [](const BoundVariable&) {});
}

void Scopes::popVisibleLocalScopes() {
    while (hasVisibleLocalScope()) popLocalScope();
}

Variable* Scopes::findIn(Scope& scope, NameId name) {
    for (auto& [entryName, value] : scope)
        if (entryName == name) return &value;
    return nullptr;
}

// In the native scope and among the globals.
Variable* Scopes::findPastCalls(NameId name) {
    if (name >= cellCount_) return nullptr;
    Cell& cell = cells_[name];
    if (cell.nativeEntries > 0) {
        if (Variable* native = findNative(name)) return native;
    }
    return cell.defined ? &cell.global : nullptr;
}

Variable* Scopes::findNative(NameId name) {
    return nativeLevel_ < nativeScopes_.size() ? findIn(nativeScopes_[nativeLevel_], name) : nullptr;
}

Variable* Scopes::findExplicit(NameId name, int scope) {
    if (scope == 0) return findIn(externalScope_, name);
    if (scope == 2) return findNative(name);
    if (name >= cellCount_) return nullptr;
    Cell& cell = cells_[name];
    if (scope == 1) return cell.defined ? &cell.global : nullptr;
    return cell.newestLocal >= visibleLocals_ ? &locals_[cell.newestLocal].value : nullptr;
}

void Scopes::setGlobal(NameId name, Variable value) {
    Cell& cell = cellFor(name);
    cell.global = std::move(value);
    cell.defined = true;
}

void Scopes::setNative(NameId name, Variable value) {
    if (nativeLevel_ >= nativeScopes_.size()) {
        if (nativeLevel_ > maximumNativeLevel)
            throw std::runtime_error("native scope level out of range: " + std::to_string(nativeLevel_));
        nativeScopes_.resize(nativeLevel_ + std::size_t{1});
    }
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

CallScope Scopes::pushCallScope(std::span<const NameId> names) {
    const CallScope scope = openCallScope();
    nameArguments(scope, names);
    return scope;
}

std::vector<std::pair<NameId, const Variable*>> Scopes::definedGlobals() const {
    std::vector<std::pair<NameId, const Variable*>> globals;
    for (NameId name = 0; name < cellCount_; ++name)
        if (cells_[name].defined) globals.emplace_back(name, &cells_[name].global);
    return globals;
}

void Scopes::detach(const BindingStack& stack, BindingIndex Cell::*newest) {
    for (BindingIndex place = stack.size() - 1; place >= 0; --place) {
        const BoundVariable& binding = stack[place];
        if (binding.name != noName) cells_[binding.name].*newest = binding.shadowed;
    }
}

void Scopes::attach(const BindingStack& stack, BindingIndex Cell::*newest) {
    for (BindingIndex place = 0; place < stack.size(); ++place)
        if (stack[place].name != noName) cellFor(stack[place].name).*newest = place;
}

void Scopes::exchangeFrames(Frames& frames) {
    detach(locals_, &Cell::newestLocal);
    detach(calls_, &Cell::newestCall);
    locals_.swap(frames.locals);
    calls_.swap(frames.calls);
    localScopes_.swap(frames.localScopes);
    std::swap(localBase_, frames.localBase);
    std::swap(visibleLocals_, frames.visibleLocals);
    std::swap(nativeLevel_, frames.nativeLevel);
    attach(locals_, &Cell::newestLocal);
    attach(calls_, &Cell::newestCall);
}

}  // namespace kelmora
