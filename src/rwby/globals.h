#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "rwby/value.h"

namespace vesper::ruby {

// The global variables: values by slot, slots by name. A name keeps its slot for good; a slot without a value
// is undefined. Making a slot may move the values.
class Globals {
public:
    std::int32_t ensureGlobalSlot(std::string_view name);
    // Null for a name that is unknown or undefined.
    const RubyValue* find(std::string_view name) const;
    void setGlobalSlotValue(std::int32_t slot, RubyValue value) {
        values_[static_cast<std::size_t>(slot)] = std::move(value);
    }

    RubyValue* values() { return values_.data(); }
    const RubyValue& value(std::int32_t slot) const { return values_[static_cast<std::size_t>(slot)]; }
    const std::string& name(std::int32_t slot) const { return *names_[static_cast<std::size_t>(slot)]; }

private:
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    std::unordered_map<std::string, std::int32_t, Hash, std::equal_to<>> slots_;
    std::vector<const std::string*> names_;  // the map's keys
    RubyItems values_;
};

}  // namespace vesper::ruby
