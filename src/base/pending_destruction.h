#pragma once

#include <utility>
#include <vector>

#include "base/ref.h"

namespace kelmora {

// Objects that hold values wait here when their last reference went, so that freeing a long chain of them
// does not recurse. `destroy` deletes one, and may add more. One thread only.
template <typename Kind, void (*destroy)(Kind kind, RefCounted* object)>
class PendingDestruction {
public:
    static void add(Kind kind, RefCounted* object) {
        State& state = theState();
        state.waiting.emplace_back(kind, object);
        if (state.isAtWork) return;
        state.isAtWork = true;
        while (!state.waiting.empty()) {
            const auto [doomedKind, doomed] = state.waiting.back();
            state.waiting.pop_back();
            destroy(doomedKind, doomed);
        }
        state.isAtWork = false;
    }

private:
    struct State {
        std::vector<std::pair<Kind, RefCounted*>> waiting;
        bool isAtWork = false;
    };
    static State& theState() {
        static State& state = *new State;  // outlives every file-scope value
        return state;
    }
};

}  // namespace kelmora
