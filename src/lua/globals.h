#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lua/string_pool.h"

namespace vesper::lua {

// The machine's global variables: a name gets its slot when it is first seen, and keeps it.
class Globals {
public:
    explicit Globals(StringPool& strings) : strings_(strings) {}

    std::uint32_t resolveGlobalSlot(std::string_view name) {
        if (const auto found = slots_.find(name); found != slots_.end()) return found->second;
        const auto slot = static_cast<std::uint32_t>(values_.size());
        values_.emplace_back();
        names_.push_back(strings_.intern(name));
        slots_.emplace(names_.back().letters(), slot);
        return slot;
    }
    // Null for a name that nothing mentioned yet.
    const Value* find(std::string_view name) const {
        const auto found = slots_.find(name);
        return found == slots_.end() ? nullptr : &values_[found->second];
    }
    void set(std::string_view name, Value value) { values_[resolveGlobalSlot(name)] = std::move(value); }

    Value* slots() { return values_.data(); }
    void clear() {
        for (Value& value : values_) value.reset();
    }

private:
    StringPool& strings_;
    std::unordered_map<std::string_view, std::uint32_t> slots_;  // keys are the names' own bytes
    std::vector<Value> names_;
    std::vector<Value> values_;
};

}  // namespace vesper::lua
