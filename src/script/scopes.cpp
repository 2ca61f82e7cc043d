#include "script/scopes.h"

#include <stdexcept>
#include <string>

namespace kelmora {
namespace {

// Levels follow the nesting of blocks, but a state file may claim any.
constexpr std::uint32_t maximumNativeLevel = 0xFFFF;

// From now on a look that gets past all bindings of the name has to search.
template <typename Link>
void forgetGlobal(BindingStack<Link>& stack, const Cell& cell) {
    for (BindingIndex place = 0; place < stack.size(); ++place) {
        Link& link = stack.link(place);
        if (link.cell == &cell && link.hidden == &cell.global) link.hidden = &Variable::unfound();
    }
}

}  // namespace

void Scopes::growCells(NameId name) {
    while (name >= cellCount()) {
        const NameId first = cellCount();
        cells_.push_back(std::make_unique<Cell[]>(cellsInBlock));
        for (NameId i = 0; i < cellsInBlock; ++i) cells_.back()[i].name = first + i;
    }
}

// Gives a call as many arguments as there are parameters.
void Scopes::fitArguments(Variable* end) {
    while (calls_.top() < end) calls_.push(Variable());
    calls_.dropTo(end);
}

Variable* Scopes::findIn(Scope& scope, NameId name) {
    for (auto& [entryName, value] : scope)
        if (entryName == name) return &value;
    return nullptr;
}

// In the native scope and among the globals.
Variable* Scopes::search(Cell& cell) {
    if (cell.nativeEntries > 0) {
        if (Variable* native = findNative(cell.name)) return native;
        return cell.defined ? &cell.global : nullptr;
    }
    return cell.defined ? cell.value = &cell.global : nullptr;
}

Variable* Scopes::findNative(NameId name) {
    return nativeLevel_ < nativeScopes_.size() ? findIn(nativeScopes_[nativeLevel_], name) : nullptr;
}

Variable* Scopes::findExplicit(NameId name, int scope) {
    if (scope == 0) return findIn(externalScope_, name);
    if (scope == 2) return findNative(name);
    Cell& cell = this->cell(name);
    if (scope == 1) return cell.defined ? &cell.global : nullptr;
    return cell.newestLocal >= view_.visibleLocals ? &locals_.value(cell.newestLocal) : nullptr;
}

void Scopes::setGlobal(Cell& cell, Variable value) {
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
    Cell& cell = this->cell(name);
    if (cell.nativeEntries++ > 0) return;
    if (cell.value == &cell.global) cell.value = &Variable::unfound();
    forgetGlobal(locals_, cell);
    forgetGlobal(calls_, cell);
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
    const CallScope scope = calls_.top();
    for (const NameId name : names) {
        Variable& entry = calls_.push(Variable());
        Cell& cell = this->cell(name);
        const Variable* const top = *topOf(cell);
        const bool isRepeated = top >= scope && top < &entry;
        if (!isRepeated) nameCallEntry(entry, cell);
    }
    return scope;
}

Variable** Scopes::topBelowLocals(Cell& cell) {
    BindingIndex oldest = cell.newestLocal;
    while (locals_.link(oldest).shadowed >= view_.visibleLocals) oldest = locals_.link(oldest).shadowed;
    return &locals_.link(oldest).hidden;
}

void Scopes::hideLocals() {
    for (BindingIndex place = locals_.size() - 1; place >= view_.visibleLocals; --place) {
        const LocalLink& link = locals_.link(place);
        link.cell->value = link.hidden;
    }
    view_ = {localScopes_.size(), locals_.size()};
}

void Scopes::showLocals(const View& view) {
    view_ = view;
    for (BindingIndex place = view_.visibleLocals; place < locals_.size(); ++place) {
        LocalLink& link = locals_.link(place);
        link.hidden = std::exchange(link.cell->value, &locals_.value(place));
    }
}

std::vector<std::pair<NameId, const Variable*>> Scopes::definedGlobals() const {
    std::vector<std::pair<NameId, const Variable*>> globals;
    for (const std::unique_ptr<Cell[]>& block : cells_)
        for (const Cell& cell : std::span(block.get(), cellsInBlock))
            if (cell.defined) globals.emplace_back(cell.name, &cell.global);
    return globals;
}

Scopes::Frames Scopes::framesWithLocals(std::span<const NameId> names, std::span<const Variable> values,
                                        std::uint32_t nativeLevel) {
    Frames frames;
    frames.localScopes.push(0);
    frames.nativeLevel = nativeLevel;
    BindingStack<LocalLink>& locals = frames.locals;
    for (std::size_t i = 0; i < names.size(); ++i) {
        Cell& name = cell(names[i]);
        Variable value = i < values.size() ? Variable(values[i]) : Variable();
        BindingIndex place = 0;
        while (place < locals.size() && locals.link(place).cell != &name) ++place;
        if (place < locals.size()) {
            locals.value(place) = std::move(value);
        } else {
            locals.push(std::move(value));
            locals.link(place).cell = &name;
        }
    }
    return frames;
}

// Takes every binding out of the cells.
void Scopes::detach() {
    hideLocals();
    for (BindingIndex place = locals_.size() - 1; place >= 0; --place)
        locals_.link(place).cell->newestLocal = locals_.link(place).shadowed;
    for (BindingIndex place = calls_.size() - 1; place >= 0; --place) {
        const BindingLink& link = calls_.link(place);
        if (link.cell) link.cell->value = link.hidden;
    }
}

void Scopes::attach(const View& view) {
    for (BindingIndex place = 0; place < calls_.size(); ++place) {
        BindingLink& link = calls_.link(place);
        if (link.cell) link.hidden = std::exchange(link.cell->value, &calls_.value(place));
    }
    for (BindingIndex place = 0; place < locals_.size(); ++place) {
        LocalLink& link = locals_.link(place);
        link.shadowed = std::exchange(link.cell->newestLocal, place);
    }
    showLocals(view);
}

void Scopes::exchangeFrames(Frames& frames) {
    const View view = std::exchange(frames.view, view_);
    detach();
    locals_.swap(frames.locals);
    calls_.swap(frames.calls);
    localScopes_.swap(frames.localScopes);
    std::swap(nativeLevel_, frames.nativeLevel);
    attach(view);
}

}  // namespace kelmora
