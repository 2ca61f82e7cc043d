#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "base/small_stack.h"
#include "script/binding_stack.h"
#include "script/place.h"

namespace kelmora {

// An open call scope, by its first value.
using CallScope = Variable*;

// All variable storage of an interpreter. A name is looked for in the local scopes of the running call,
// then in the call scopes of all running calls from the newest, then in the current native scope, then
// among the globals.
//
// Each name has a cell, which never moves and holds what a look finds; each binding holds what it hides of
// its name and puts it back when it goes. So a look is a load at any depth, and scopes cost where they open
// and close. A pointer to a value holds until the next write or drop.
class Scopes {
public:
    Cell& cell(NameId name) {
        if (name >= cellCount()) growCells(name);
        return cells_[name / cellsInBlock][name % cellsInBlock];
    }

    // A name that is nowhere gives null.
    Variable* find(Cell& cell) { return cell.value->isUnfound() ? search(cell) : cell.value; }
    const Variable* find(NameId name) const { return const_cast<Scopes*>(this)->findMutable(name); }
    Variable* findMutable(NameId name) { return find(cell(name)); }
    // The scopes of `name#n`: 0 external, 1 global, 2 native, 3 local.
    Variable* findExplicit(NameId name, int scope);

    void setGlobal(NameId name, Variable value) { setGlobal(cell(name), std::move(value)); }
    void setLocal(NameId name, Variable&& value) { setLocal(cell(name), std::move(value)); }
    void setLocal(Cell& cell, Variable&& value) {
        if (!hasVisibleLocalScope()) pushLocalScope();
        if (cell.newestLocal >= localScopes_.back()) {
            locals_.value(cell.newestLocal) = std::move(value);
            return;
        }
        const BindingIndex place = locals_.size();
        Variable& bound = locals_.push(std::move(value));
        locals_.link(place) = {{&cell, cell.value}, cell.newestLocal};
        cell.newestLocal = place;
        cell.value = &bound;
    }
    void setNative(NameId name, Variable value);
    void setExternal(NameId name, Variable value);
    void setExplicit(NameId name, int scope, Variable value);
    // Overwrites the variable that the name resolves to, or makes a global.
    void assignDefault(NameId name, Variable&& value) { assignDefault(cell(name), std::move(value)); }
    void assignDefault(Cell& cell, Variable&& value) {
        if (Variable* existing = find(cell)) {
            *existing = std::move(value);
        } else {
            setGlobal(cell, std::move(value));
        }
    }
    // Moves every external entry to the globals.
    void commitExternals();

    // Local scopes: one for each running block.
    void pushLocalScope() { localScopes_.push(locals_.size()); }
    void popLocalScope() {
        locals_.dropTo(&locals_.value(localScopes_.back()), [](const LocalLink& link) {
            link.cell->newestLocal = link.shadowed;
            link.cell->value = link.hidden;
        });
        localScopes_.drop();
    }
    std::uint32_t localScopeCount() const { return localScopes_.size(); }
    void popLocalScopesTo(std::uint32_t count) {
        while (localScopes_.size() > count) popLocalScope();
    }
    bool hasVisibleLocalScope() const { return localScopes_.size() > view_.localBase; }

    // Call scopes: parameters, loop variables, and the values without a name that calls and loops keep.
    // Scopes are closed in the reverse order of opening.
    BindingStack<BindingLink>& calls() { return calls_; }
    const BindingStack<BindingLink>& calls() const { return calls_; }
    const BindingStack<LocalLink>& locals() const { return locals_; }
    // Missing values are nil. A name that stands twice keeps its first place.
    CallScope pushCallScope(std::span<const NameId> names);
    // Closes a scope in a call that goes on, or all that a call has opened: its locals are gone then.
    void popCallScope(CallScope scope) {
        calls_.dropTo(scope, [this](const BindingLink& link) { *topOf(*link.cell) = link.hidden; });
    }
    void leaveCallScopes(CallScope scope) {
        calls_.dropTo(scope, [](const BindingLink& link) { link.cell->value = link.hidden; });
    }
    // Gives a value of the running call's stack a name that it does not hold there yet.
    void nameCallEntry(Variable& entry, Cell& cell) {
        Variable** const top = topOf(cell);
        calls_.linkOf(&entry) = {&cell, *top};
        *top = &entry;
    }
    // Gives the newest values, which begin here, the names of so many parameters, which differ from each
    // other; values without a name are dropped. The caller's locals are out of sight already.
    [[gnu::always_inline]] void nameArguments(Variable* value, Cell* const* parameters,
                                              std::uint32_t parameterCount) {
        if (calls_.top() != value + parameterCount) [[unlikely]]
            fitArguments(value + parameterCount);
        BindingLink* link = &calls_.linkOf(value);
        for (Cell* const* const end = parameters + parameterCount; parameters != end;
             ++value, ++link, ++parameters) {
            Cell& parameter = **parameters;
            link->cell = &parameter;
            link->hidden = parameter.value;
            parameter.value = value;
        }
    }

    // What a call hides of its caller and gives back at its end.
    struct View {
        std::uint32_t localBase = 0;     // local scopes below this belong to callers
        BindingIndex visibleLocals = 0;  // first binding of the scopes above localBase
    };
    const View& view() const { return view_; }
    // Starts a call: the block locals of the caller go out of sight.
    [[gnu::always_inline]] void enterCall() {
        if (hasVisibleLocalScope()) hideLocals();
    }
    // Ends a call with all scopes that it has left open, down to its first argument.
    [[gnu::always_inline]] void leaveCall(const View& caller, CallScope arguments) {
        if (hasVisibleLocalScope()) popLocalScopesTo(view_.localBase);
        leaveCallScopes(arguments);
        if (view_.localBase != caller.localBase) showLocals(caller);
    }

    std::uint32_t nativeLevel() const { return nativeLevel_; }
    void setNativeLevel(std::uint32_t level) { nativeLevel_ = level; }

    // Of the native level in hand.
    std::span<const std::pair<NameId, Variable>> natives() const {
        if (nativeLevel_ >= nativeScopes_.size()) return {};
        return nativeScopes_[nativeLevel_];
    }
    // The globals that hold a value now, in no particular order.
    std::vector<std::pair<NameId, const Variable*>> definedGlobals() const;

    // Local and call scopes of a coroutine, which take the place of the main script's for its turn.
    struct Frames {
        static constexpr BindingIndex capacity = 1 << 14;
        BindingStack<LocalLink> locals{capacity};
        BindingStack<BindingLink> calls{capacity};
        SmallStack<BindingIndex> localScopes;
        View view;
        std::uint32_t nativeLevel = 0;
    };
    // With one local scope of these names; missing values are nil.
    Frames framesWithLocals(std::span<const NameId> names, std::span<const Variable> values,
                            std::uint32_t nativeLevel);
    void exchangeFrames(Frames& frames);

private:
    using Scope = std::vector<std::pair<NameId, Variable>>;
    static constexpr NameId cellsInBlock = 256;

    NameId cellCount() const { return static_cast<NameId>(cells_.size()) * cellsInBlock; }
    void growCells(NameId name);
    Variable* search(Cell& cell);
    Variable* findNative(NameId name);
    static Variable* findIn(Scope& scope, NameId name);
    void setGlobal(Cell& cell, Variable value);

    // What a call binding of the name hides or is hidden by: the running call's locals go before it.
    Variable** topOf(Cell& cell) {
        return cell.newestLocal >= view_.visibleLocals ? topBelowLocals(cell) : &cell.value;
    }
    Variable** topBelowLocals(Cell& cell);
    void fitArguments(Variable* end);
    // The running call's locals go out of sight; those of the view come back.
    [[gnu::noinline]] void hideLocals();
    [[gnu::noinline]] void showLocals(const View& view);
    void detach();
    void attach(const View& view);

    std::vector<std::unique_ptr<Cell[]>> cells_;  // by name, in blocks
    BindingStack<LocalLink> locals_;
    BindingStack<BindingLink> calls_;
    SmallStack<BindingIndex> localScopes_;  // place of each scope's first binding
    std::vector<Scope> nativeScopes_;       // by level
    Scope externalScope_;
    View view_;
    std::uint32_t nativeLevel_ = 0;
};

// Puts the stack of local scopes back to what it was, with a scope of its own on top when wanted.
class LocalScopeGuard {
public:
    LocalScopeGuard(Scopes& scopes, bool opensScope) : scopes_(scopes), count_(scopes.localScopeCount()) {
        if (opensScope) scopes_.pushLocalScope();
    }
    LocalScopeGuard(const LocalScopeGuard&) = delete;
    LocalScopeGuard& operator=(const LocalScopeGuard&) = delete;
    ~LocalScopeGuard() { scopes_.popLocalScopesTo(count_); }

private:
    Scopes& scopes_;
    std::uint32_t count_;
};

class NativeLevelGuard {
public:
    NativeLevelGuard(Scopes& scopes, std::uint32_t level) : scopes_(scopes), previous_(scopes.nativeLevel()) {
        scopes_.setNativeLevel(level);
    }
    NativeLevelGuard(const NativeLevelGuard&) = delete;
    NativeLevelGuard& operator=(const NativeLevelGuard&) = delete;
    ~NativeLevelGuard() { scopes_.setNativeLevel(previous_); }

private:
    Scopes& scopes_;
    std::uint32_t previous_;
};

}  // namespace kelmora
