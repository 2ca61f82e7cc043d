#include "ai/ai_model_builder.h"

namespace kelmora {
namespace {

constexpr int longestWalk = 32;

}  // namespace

void AIModelBuilder::setCount(std::uint32_t state, std::string_view successor, std::int32_t count) {
    model_.setCount(findOrAdd(state, successor), count);
}

std::uint32_t AIModelBuilder::findOrAdd(std::uint32_t state, std::string_view successor) {
    std::uint32_t found = model_.firstTransition(state);
    for (int steps = 0; steps < longestWalk; ++steps) {
        if (found == AIModel::none) return model_.addTransition(state, successor);
        if (model_.successor(found) == successor) return found;
        found = model_.transitionAfter(found);
    }
    std::string key = std::to_string(state).append(1, ':').append(successor);
    const auto [entry, isNew] = distant_.try_emplace(std::move(key), AIModel::none);
    if (isNew) entry->second = model_.addTransition(state, successor);
    return entry->second;
}

}  // namespace kelmora
