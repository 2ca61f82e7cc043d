#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "base/small_stack.h"
#include "script/binding_stack.h"
#include "script/names.h"
#include "script/token.h"
#include "script/variable.h"

namespace kelmora {

// An open call scope, by the place of its first binding.
using CallScope = BindingIndex;

// All variable storage of an interpreter. A name is looked for in the local scopes of the running call,
// then in the call scopes of all running calls from the newest, then in the current native scope, then
// among the globals.
//
// Each name has a cell that knows its newest binding in the local and in the call scopes, and each
// binding knows the one it shadows: look-up is an index, not a search, and costs the same at any depth.
class Scopes {
public:
    // A name that is nowhere gives null. A pointer holds until the next write or push.
    const Variable* find(NameId name) const { return const_cast<Scopes*>(this)->findMutable(name); }
    Variable* findMutable(NameId name) {
        Variable* found = findQuicklyMutable(name);
        return found ? found : findPastCalls(name);
    }
    // The same, but a name that native scopes hold may give null too. Calls nothing.
    const Variable* findQuickly(NameId name) const {
        return const_cast<Scopes*>(this)->findQuicklyMutable(name);
    }
    Variable* findQuicklyMutable(NameId name) {
        if (name >= cellCount_) return nullptr;
        Cell& cell = cells_[name];
        if (cell.newestLocal >= visibleLocals_) return &locals_[cell.newestLocal].value;
        if (cell.newestCall != noBinding) return &calls_[cell.newestCall].value;
        return cell.isOnlyGlobal() ? &cell.global : nullptr;
    }
    // The scopes of `name#n`: 0 external, 1 global, 2 native, 3 local.
    Variable* findExplicit(NameId name, int scope);

    void setGlobal(NameId name, Variable value);
    void setLocal(NameId name, Variable&& value) {
        if (!hasVisibleLocalScope()) pushLocalScope();
        Cell& cell = cellFor(name);
        if (cell.newestLocal >= localScopes_.back()) {
            locals_[cell.newestLocal].value = std::move(value);
        } else {
            locals_.push(name, cell.newestLocal, std::move(value));
            cell.newestLocal = locals_.size() - 1;
        }
    }
    void setNative(NameId name, Variable value);
    void setExternal(NameId name, Variable value);
    void setExplicit(NameId name, int scope, Variable value);
    // Overwrites the variable that the name resolves to, or makes a global.
    void assignDefault(NameId name, Variable&& value) {
        if (Variable* existing = findMutable(name)) {
            *existing = std::move(value);
        } else {
            setGlobal(name, std::move(value));
        }
    }
    // Moves every external entry to the globals.
    void commitExternals();

    // Local scopes: one for each running block.
    void pushLocalScope() { localScopes_.push(locals_.size()); }
    void popLocalScope() {
        unbindTo(locals_, &Cell::newestLocal, localScopes_.back());
        localScopes_.drop();
    }
    std::uint32_t localScopeCount() const { return localScopes_.size(); }
    bool hasVisibleLocalScope() const { return localScopes_.size() > localBase_; }

    // Call scopes: parameters and loop variables. Missing arguments are nil. A name that stands twice
    // keeps its first place. Scopes are closed in the reverse order of opening.
    CallScope pushCallScope(std::span<const NameId> names);
    void popCallScope(CallScope scope) { unbindTo(calls_, &Cell::newestCall, scope); }
    // The n-th entry of a call scope.
    Variable& callEntry(CallScope scope, std::size_t index) {
        return calls_[scope + static_cast<BindingIndex>(index)].value;
    }
    // Opening in steps, for a call whose arguments are made where they will stand: each value is added
    // without a name, and then the names are given to them.
    CallScope openCallScope() const { return calls_.size(); }
    void addArgument(Variable&& value) { calls_.push(noName, noBinding, std::move(value)); }
    [[gnu::always_inline]] void nameArguments(CallScope scope, std::span<const NameId> names) {
        const auto end = scope + static_cast<BindingIndex>(names.size());
        if (calls_.size() != end) fitArguments(end);
        coverNames(names);
        BoundVariable* binding = calls_.place(scope);
        for (BindingIndex place = scope; const NameId name : names) {
            Cell& cell = cells_[name];
            if (cell.newestCall < scope) {  // a repeated name keeps its first place
                binding->name = name;
                binding->shadowed = cell.newestCall;
                cell.newestCall = place;
            }
            ++binding;
            ++place;
        }
    }

    // What a call hides of its caller and gives back at its end.
    struct CallerView {
        std::uint32_t localBase;
        BindingIndex visibleLocals;
        std::uint32_t nativeLevel;
    };
    CallerView callerView() const { return {localBase_, visibleLocals_, nativeLevel_}; }
    // Starts a call: the block locals of the caller go out of sight.
    void enterCall(std::uint32_t nativeLevel) {
        localBase_ = localScopes_.size();
        visibleLocals_ = locals_.size();
        nativeLevel_ = nativeLevel;
    }
    // Also drops what is left of the local scopes opened since enterCall.
    void leaveCall(const CallerView& view) {
        if (hasVisibleLocalScope()) popVisibleLocalScopes();
        localBase_ = view.localBase;
        visibleLocals_ = view.visibleLocals;
        nativeLevel_ = view.nativeLevel;
    }

    std::uint32_t nativeLevel() const { return nativeLevel_; }
    void setNativeLevel(std::uint32_t level) { nativeLevel_ = level; }

    // The globals that hold a value now, in no particular order.
    std::vector<std::pair<NameId, const Variable*>> definedGlobals() const;

    // Local and call scopes of a coroutine, which take the place of the main script's for its turn.
    struct Frames {
        BindingStack locals;
        BindingStack calls;
        SmallStack<BindingIndex> localScopes;
        std::uint32_t localBase = 0;
        BindingIndex visibleLocals = 0;
        std::uint32_t nativeLevel = 0;
    };
    void exchangeFrames(Frames& frames);

private:
    struct Cell {
        Variable global;
        BindingIndex newestLocal = noBinding;
        BindingIndex newestCall = noBinding;
        std::uint32_t nativeEntries = 0;
        bool defined = false;
        bool isOnlyGlobal() const { return defined && nativeEntries == 0; }
    };
    using Scope = std::vector<std::pair<NameId, Variable>>;

    Cell& cellFor(NameId name) {
        if (name >= cellCount_) growCells(name);
        return cells_[name];
    }
    void growCells(NameId name);
    void coverNames(std::span<const NameId> names) {
        for (const NameId name : names) cellFor(name);
    }
    void fitArguments(BindingIndex end);
    void popVisibleLocalScopes();
    Variable* findPastCalls(NameId name);
    Variable* findNative(NameId name);
    static Variable* findIn(Scope& scope, NameId name);
    void unbindTo(BindingStack& stack, BindingIndex Cell::*newest, BindingIndex size) {
        stack.dropTo(size, [&](const BoundVariable& binding) {
            if (binding.name != noName) cells_[binding.name].*newest = binding.shadowed;
        });
    }
    void detach(const BindingStack& stack, BindingIndex Cell::*newest);
    void attach(const BindingStack& stack, BindingIndex Cell::*newest);

    std::unique_ptr<Cell[]> cells_;  // by name
    std::uint32_t cellCount_ = 0;
    BindingStack locals_;
    BindingStack calls_;
    SmallStack<BindingIndex> localScopes_;  // place of each scope's first binding
    std::vector<Scope> nativeScopes_;       // by level
    Scope externalScope_;
    std::uint32_t localBase_ = 0;     // local scopes below this belong to callers
    BindingIndex visibleLocals_ = 0;  // first binding of the scopes above localBase_
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
    ~LocalScopeGuard() {
        while (scopes_.localScopeCount() > count_) scopes_.popLocalScope();
    }

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
