#include "ai/ai_request.h"

#include <stdexcept>
#include <utility>

#include "ai/ai_generation.h"
#include "ai/ai_model_file.h"
#include "ai/ai_training.h"

namespace kelmora {
namespace {

AIModel retrained(const AIRequest& request) {
    if (request.filePath.empty()) throw std::runtime_error("filePath is required for retraining");
    std::string text = aiReadFile(request.filePath);
    if (request.hasTextInput) text.append(1, '\n').append(request.textInput);
    return aiTrainModel(std::move(text), request.dataSize);
}

AIModel givenOrLoaded(AIRequest& request) {
    if (request.hasModel) return std::move(request.model);
    if (request.modelPath.empty())
        throw std::runtime_error("Either model or modelPath must be provided when skipTraining is true");
    return aiLoadModelFromPath(request.modelPath);
}

AIModel trained(const AIRequest& request) {
    if (request.filePath.empty()) throw std::runtime_error("filePath is required for training");
    return aiTrainModel(aiReadFile(request.filePath), request.dataSize);
}

std::string generated(const AIRequest& request, const AIModel& model, AIRandom& random) {
    AIGeneration wanted;
    if (request.hasTextInput) wanted.seed = request.textInput;
    wanted.genLength = request.genLength;
    wanted.escape = request.escapeCharacter;
    wanted.dataSize = request.dataSize;
    return aiGenerateTextImpl(model, wanted, random);
}

}  // namespace

AIJobResult aiExecuteRequest(AIRequest request, AIRandom& random) {
    AIJobResult result;
    if (request.retrain) {
        result.model = retrained(request);
    } else {
        result.model = request.skipTraining ? givenOrLoaded(request) : trained(request);
        result.text = generated(request, result.model, random);
    }
    if (request.saveModel && !request.modelPath.empty()) aiSaveModelToPath(result.model, request.modelPath);
    result.ok = true;
    return result;
}

}  // namespace kelmora
