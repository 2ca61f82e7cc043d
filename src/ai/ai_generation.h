#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ai/ai_model.h"
#include "ai/ai_random.h"

namespace kelmora {

struct AIGeneration {
    std::optional<std::string_view> seed;    // what the text begins with; without one, a state of the model
    std::int32_t genLength = 0;              // successors to add at most
    std::optional<std::string_view> escape;  // a successor that ends the text and is not part of it
    std::int32_t dataSize = 0;               // the order that the model was trained with
};

// Walks the model at random, each successor as likely as its count says. The walk ends early where the model
// knows nothing more.
std::string aiGenerateTextImpl(const AIModel& model, const AIGeneration& wanted, AIRandom& random);

}  // namespace kelmora
