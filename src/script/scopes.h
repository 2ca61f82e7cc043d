#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "script/names.h"
#include "script/token.h"
#include "script/variable.h"

namespace kelmora {

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
        if (name >= cells_.size()) return nullptr;
        Cell& cell = cells_[name];
        if (cell.newestLocal >= visibleLocals_)
            return &locals_[static_cast<std::size_t>(cell.newestLocal)].value;
        if (cell.newestCall != none) return &calls_[static_cast<std::size_t>(cell.newestCall)].value;
        if (cell.nativeEntries > 0) {
            if (Variable* native = findNative(name)) return native;
        }
        return cell.defined ? &cell.global : nullptr;
    }
    // The scopes of `name#n`: 0 external, 1 global, 2 native, 3 local.
    Variable* findExplicit(NameId name, int scope);

    void setGlobal(NameId name, Variable value);
    void setLocal(NameId name, Variable value);
    void setNative(NameId name, Variable value);
    void setExternal(NameId name, Variable value);
    void setExplicit(NameId name, int scope, Variable value);
    // Overwrites the variable that the name resolves to, or makes a global.
    void assignDefault(NameId name, Variable value) {
        if (Variable* existing = findMutable(name)) {
            *existing = std::move(value);
        } else {
            setGlobal(name, std::move(value));
        }
    }
    // Moves every external entry to the globals.
    void commitExternals();

    // Local scopes: one for each running block.
    void pushLocalScope() { localScopes_.push_back(bindingCount(locals_)); }
    void popLocalScope() {
        unbindTo(locals_, &Cell::newestLocal, localScopes_.back());
        localScopes_.pop_back();
    }
    std::size_t localScopeCount() const { return localScopes_.size(); }
    bool hasVisibleLocalScope() const { return localScopes_.size() > localBase_; }

    // Call scopes: parameters and loop variables. Missing arguments are nil. A name that stands twice
    // keeps its first place.
    void pushCallScope(std::span<const NameId> names, std::span<const Variable> values);
    void popCallScope() {
        unbindTo(calls_, &Cell::newestCall, callScopes_.back());
        callScopes_.pop_back();
    }
    // The n-th entry of the newest call scope.
    Variable& callEntry(std::size_t index) {
        return calls_[static_cast<std::size_t>(callScopes_.back()) + index].value;
    }
    // The same in two steps, for a call whose arguments are made where they will stand: the scope is opened,
    // each value is added without a name, and then the names are given to them.
    void openCallScope() { callScopes_.push_back(bindingCount(calls_)); }
    void addArgument(Variable value) { calls_.emplace_back(noName, none, std::move(value)); }
    void nameArguments(std::span<const NameId> names);

    // Starts a call: the block locals of the caller go out of sight. Returns what leaveCall wants back.
    std::uint32_t enterCall() {
        const std::uint32_t previous = localBase_;
        localBase_ = static_cast<std::uint32_t>(localScopes_.size());
        visibleLocals_ = bindingCount(locals_);
        return previous;
    }
    // Also drops what is left of the local scopes opened since enterCall.
    void leaveCall(std::uint32_t previous) {
        while (hasVisibleLocalScope()) popLocalScope();
        localBase_ = previous;
        visibleLocals_ = localBase_ < localScopes_.size() ? localScopes_[localBase_] : bindingCount(locals_);
    }

    std::uint32_t nativeLevel() const { return nativeLevel_; }
    void setNativeLevel(std::uint32_t level) { nativeLevel_ = level; }

    // The globals that hold a value now, in no particular order.
    std::vector<std::pair<NameId, const Variable*>> definedGlobals() const;

    // Local and call scopes of a coroutine, which take the place of the main script's for its turn.
    struct Frames;
    void exchangeFrames(Frames& frames);

private:
    // Place in a stack of bindings. `none` is less than every place.
    using BindingIndex = std::int32_t;
    static constexpr BindingIndex none = -1;

    struct Binding {
        Binding(NameId bound, BindingIndex hidden, Variable content)
            : name(bound), shadowed(hidden), value(std::move(content)) {}
        NameId name;
        BindingIndex shadowed;
        Variable value;
    };
    struct Cell {
        Variable global;
        BindingIndex newestLocal = none;
        BindingIndex newestCall = none;
        std::uint32_t nativeEntries = 0;
        bool defined = false;
    };
    using Scope = std::vector<std::pair<NameId, Variable>>;

public:
    struct Frames {
        std::vector<Binding> locals;
        std::vector<Binding> calls;
        std::vector<BindingIndex> localScopes;
        std::vector<BindingIndex> callScopes;
        std::uint32_t localBase = 0;
        BindingIndex visibleLocals = 0;
        std::uint32_t nativeLevel = 0;
    };

private:
    Cell& cellFor(NameId name);
    Variable* findNative(NameId name);
    static Variable* findIn(Scope& scope, NameId name);
    static BindingIndex bindingCount(const std::vector<Binding>& stack) {
        return static_cast<BindingIndex>(stack.size());
    }
    void bind(std::vector<Binding>& stack, BindingIndex Cell::*newest, NameId name, Variable value);
    void unbindTo(std::vector<Binding>& stack, BindingIndex Cell::*newest, BindingIndex size) {
        while (bindingCount(stack) > size) {
            const Binding& binding = stack.back();
            if (binding.name != noName) cells_[binding.name].*newest = binding.shadowed;
            stack.pop_back();
        }
    }
    void detach(const std::vector<Binding>& stack, BindingIndex Cell::*newest);
    void attach(std::vector<Binding>& stack, BindingIndex Cell::*newest);

    std::vector<Cell> cells_;  // by name
    std::vector<Binding> locals_;
    std::vector<Binding> calls_;
    std::vector<BindingIndex> localScopes_;  // index of each scope's first binding
    std::vector<BindingIndex> callScopes_;
    std::vector<Scope> nativeScopes_;  // by level
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
    std::size_t count_;
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
