#include <memory>
#include <utility>

#include "ai/ai_generation.h"
#include "ai/ai_jobs.h"
#include "ai/ai_model_builder.h"
#include "ai/ai_model_file.h"
#include "base/saturating.h"
#include "bindings/modules.h"
#include "bindings/runtime.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

// Failures of the text model, as those of the member that was called.
template <typename Work>
auto raisingAs(const BindingCall& call, Work work) {
    try {
        return work();
    } catch (const std::exception& failure) {
        call.fail(failure.what());
    }
}

[[noreturn]] void failModel(const BindingCall& call) {
    call.fail("model must be a nested transition table");
}

std::int32_t countOf(const BindingCall& call, const Variable& value) {
    if (value.isInt()) return value.intValue();
    if (!value.isFloat()) failModel(call);
    const double number = static_cast<double>(value.floatValue());
    const std::int32_t count = saturatingInt(number);
    if (count != number) failModel(call);
    return count;
}

AIModel modelArgument(const BindingCall& call, std::size_t index) {
    const Variable& value = call.at(index);
    if (!value.isTable()) failModel(call);
    AIModelBuilder model;
    const auto states = value.table().sortedKeys();
    for (std::size_t i = 0; i < states->keys.size(); ++i) {
        const Variable& followers = *value.table().findListed(*states, i);
        if (!followers.isTable()) failModel(call);
        const std::uint32_t state = model.addState(states->keys[i]->text());
        const auto successors = followers.table().sortedKeys();
        for (std::size_t j = 0; j < successors->keys.size(); ++j)
            model.setCount(state, successors->keys[j]->text(),
                           countOf(call, *followers.table().findListed(*successors, j)));
    }
    return model.take();
}

Variable modelTable(const AIModel& model) {
    Variable table = Variable::makeTable();
    table.table().reserve(model.stateCount());
    for (std::uint32_t state = 0; state < model.stateCount(); ++state) {
        Variable followers = Variable::makeTable();
        for (std::uint32_t i = model.firstTransition(state); i != AIModel::none; i = model.transitionAfter(i))
            followers.table().set(std::string(model.successor(i)), Variable::integer(model.count(i)));
        table.table().set(std::string(model.state(state)), std::move(followers));
    }
    return table;
}

bool isGiven(const BindingCall& call, std::size_t index) {
    return index < call.count() && !call.at(index).isNot();
}

// Ten arguments by position, each of which may be missing.
AIRequest parseAIRequest(const BindingCall& call) {
    AIRequest request;
    request.hasTextInput = isGiven(call, 0);
    if (request.hasTextInput) request.textInput = call.text(0, "textInput");
    if (isGiven(call, 1)) request.filePath = call.path(1, "filePath");
    request.retrain = isGiven(call, 2) && call.condition(2);
    request.skipTraining = isGiven(call, 3) && call.condition(3);
    request.hasModel = isGiven(call, 4);
    if (request.hasModel) request.model = modelArgument(call, 4);
    request.saveModel = isGiven(call, 5) && call.condition(5);
    if (isGiven(call, 6)) request.modelPath = call.path(6, "modelPath");
    if (isGiven(call, 7)) request.genLength = call.integer(7, "genLength");
    if (isGiven(call, 8)) request.escapeCharacter = call.text(8, "escapeCharacter");
    if (isGiven(call, 9)) request.dataSize = call.integer(9, "dataSize");
    return request;
}

Variable aiDefaultDict(const BindingCall& call) {
    call.fail("metatable-backed defaultdict is not supported in VesperScript");
}

Variable aiGenerate(const BindingCall& call) {
    AIRequest request = parseAIRequest(call);
    const AIJobResult result = raisingAs(call, [&] { return aiExecuteRequest(std::move(request)); });
    return returnValues({Variable::text(result.text), modelTable(result.model)});
}

Variable aiGenerateAsync(const BindingCall& call) {
    AIRequest request = parseAIRequest(call);
    std::unique_ptr<AIJobs>& jobs = runtimeOf(call).aiJobs;
    if (!jobs) jobs = std::make_unique<AIJobs>();
    return Variable::integer(jobs->submit(std::move(request)));
}

Variable aiCheckJob(const BindingCall& call) {
    const std::int32_t id = call.integer(0, "jobId");
    AIJobs* jobs = runtimeOf(call).aiJobs.get();
    const AIJobs::Answer answer = jobs ? jobs->check(id) : AIJobs::Answer{};
    const Variable no = Variable::boolean(false);
    const Variable yes = Variable::boolean(true);
    switch (answer.state) {
        case AIJobs::State::Running:
            return returnValues({no, {}, {}, {}, {}});
        case AIJobs::State::Finished:
            return returnValues(
                {yes, yes, Variable::text(answer.result.text), modelTable(answer.result.model), {}});
        case AIJobs::State::Failed:
            return returnValues({yes, no, {}, {}, Variable::text(answer.failure)});
        default:
            return returnValues({yes, no, {}, {}, Variable::text("Unknown job id")});
    }
}

Variable aiGenerateText(const BindingCall& call) {
    call.require(5);
    AIGeneration wanted;
    if (isGiven(call, 0)) wanted.seed = call.text(0, "textInput");
    const AIModel model = modelArgument(call, 1);
    wanted.genLength = call.integer(2, "genLength");
    wanted.escape = call.text(3, "escapeCharacter");
    wanted.dataSize = call.integer(4, "dataSize");
    return Variable::text(raisingAs(call, [&] { return aiGenerateTextImpl(model, wanted, aiRng()); }));
}

Variable aiSaveModel(const BindingCall& call) {
    call.require(2);
    const AIModel model = modelArgument(call, 0);
    const std::string path = call.path(1, "filePath");
    raisingAs(call, [&] { aiSaveModelToPath(model, path); });
    return {};
}

Variable aiLoadModel(const BindingCall& call) {
    const std::string path = call.path(0, "filePath");
    return modelTable(raisingAs(call, [&] { return aiLoadModelFromPath(path); }));
}

constexpr BindingRow rows[] = {
    {"defaultdict", aiDefaultDict}, {"generate", aiGenerate},         {"generateAsync", aiGenerateAsync},
    {"checkJob", aiCheckJob},       {"generateText", aiGenerateText}, {"saveModel", aiSaveModel},
    {"loadModel", aiLoadModel},
};

}  // namespace

std::span<const BindingRow> aiBindings() {
    return rows;
}

}  // namespace kelmora
