#pragma once

#include <cstdint>
#include <string>

#include "ai/ai_model.h"

namespace kelmora {

// Learns which byte follows each run of `order` bytes; the text's end runs on into its beginning. An order
// below 1 counts single bytes. Raises std::runtime_error for a text of 2 GiB and more.
AIModel aiTrainModel(std::string text, std::int32_t order);

}  // namespace kelmora
