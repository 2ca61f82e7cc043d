#include "rwby/globals.h"

namespace vesper::ruby {

std::int32_t Globals::ensureGlobalSlot(std::string_view name) {
    if (const auto found = slots_.find(name); found != slots_.end()) return found->second;
    const auto slot = static_cast<std::int32_t>(values_.size());
    const auto made = slots_.emplace(std::string(name), slot).first;
    names_.push_back(&made->first);
    values_.push_back(RubyValue::undefined());
    return slot;
}

const RubyValue* Globals::find(std::string_view name) const {
    const auto found = slots_.find(name);
    if (found == slots_.end() || value(found->second).isUndefined()) return nullptr;
    return &value(found->second);
}

}  // namespace vesper::ruby
