#pragma once

#include <string_view>
#include <unordered_map>

#include "lua/value.h"

namespace vesper::lua {

// One object for each name and short text of the sources, so that the same names are the same pointer.
class StringPool {
public:
    Value intern(std::string_view letters) {
        if (letters.size() > longest) return Value::text(letters);
        if (const auto found = texts_.find(letters); found != texts_.end()) return found->second;
        const Value made = Value::text(letters);
        texts_.emplace(made.letters(), made);
        return made;
    }
    // Lets go of what nothing else holds, once it has become much.
    void trim() {
        if (texts_.size() < trimSize) return;
        std::erase_if(texts_, [](const auto& entry) { return !entry.second.string().isShared(); });
    }

private:
    static constexpr std::size_t longest = 64;
    static constexpr std::size_t trimSize = 4096;

    std::unordered_map<std::string_view, Value> texts_;  // keys are the values' own bytes
};

}  // namespace vesper::lua
