#pragma once

#include <cstdint>
#include <string>

#include "ai/ai_model.h"
#include "ai/ai_random.h"

namespace kelmora {

// What to train, generate and save, all held by value: a worker needs nothing else.
struct AIRequest {
    bool hasTextInput = false;
    std::string textInput;
    bool retrain = false;
    bool skipTraining = false;
    bool hasModel = false;
    AIModel model;
    bool saveModel = false;
    std::string filePath;  // of the training text
    std::string modelPath;
    std::int32_t genLength = 100;
    std::string escapeCharacter = ",,,";
    std::int32_t dataSize = 3;
};

struct AIJobResult {
    bool ok = false;
    std::string text;
    AIModel model;
};

// Raises std::runtime_error for a request that lacks something and for files that cannot be read or written.
AIJobResult aiExecuteRequest(AIRequest request, AIRandom& random = aiRng());

}  // namespace kelmora
