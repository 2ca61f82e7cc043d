#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "ai/ai_model.h"

namespace kelmora {

// Puts a model together from states, successors and counts in any order and with repetitions, of which the
// last counts.
class AIModelBuilder {
public:
    std::uint32_t addState(std::string_view state) { return model_.addState(state); }
    void setCount(std::uint32_t state, std::string_view successor, std::int32_t count);
    AIModel take() { return std::move(model_); }

private:
    std::uint32_t findOrAdd(std::uint32_t state, std::string_view successor);

    AIModel model_;
    // The transitions that walking along their state's would take too long to find.
    std::unordered_map<std::string, std::uint32_t> distant_;
};

}  // namespace kelmora
