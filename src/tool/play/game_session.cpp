#include "tool/play/game_session.h"

#include <utility>

#include "host/failure_page.h"
#include "host/registration.h"
#include "host/startup.h"
#include "image/image_registry.h"
#include "platform/environment.h"
#include "platform/windows_window.h"
#include "script/table_object.h"
#include "shim/shim.h"
#include "workbench/failure_report.h"

namespace kelmora {
namespace {

constexpr int updatesToEndIn = 120;

}  // namespace

GameSession::GameSession(HostServices& host, std::span<const unsigned char> bootText,
                         const std::filesystem::path& game, bool headless)
    : bootText_(bootText), runtime_(host) {
    if (headless) {
        for (const char* device : {"KELMORA_VIDEO", "KELMORA_AUDIO"}) setEnvironment(device, "memory");
        runtime_.engine.pushVariable("fastForward", Variable::boolean(true));
    }
    // Input comes from the watcher alone.
    setEnvironment("KELMORA_INPUT", nullptr);
    std::filesystem::create_directories(game / "Resources/volatile");
    runtime_.path = (game / "Resources").generic_string() + "/";
    registerFunctions(runtime_);
    if (headless) setClockByUpdates();
}

GameSession::~GameSession() {
    runtime_.destroyWindow();
    while (!livePlushImages.empty()) killPlushImage(*livePlushImages.begin());
}

void GameSession::wrap(const char* module, const char* member, Around around) {
    const Variable table = globalOf(runtime_.engine, module);
    if (!table.isTable()) return;
    const Variable* found = table.table().find(member);
    if (!found || !found->isFunction()) return;
    const std::string name = std::string(module) + "." + member;
    const Variable original = *found;
    table.table().set(member,
                      VesperScript::createNativeCallable(
                          [around = std::move(around), original](const std::vector<Variable>& arguments) {
                              return around(original, arguments);
                          },
                          name));
}

// Nothing waits, and the same input is the same game. Each look takes a millisecond, so that a script that
// waits for the clock gets there.
void GameSession::setClockByUpdates() {
    const auto now = [this] { return Variable::integer(++clock_); };
    wrap("Vesper", "getGlobalTime", [now](const Variable&, const std::vector<Variable>&) { return now(); });
    wrap("Vesper", "getClock", [this, now](const Variable&, const std::vector<Variable>&) {
        const std::int32_t before = std::exchange(frameClock_, now().intValue());
        return Variable::integer(frameClock_ - before);
    });
    wrap("Vesper", "sleep", [this](const Variable&, const std::vector<Variable>& arguments) {
        if (!arguments.empty() && arguments[0].isInt() && arguments[0].intValue() > 0)
            clock_ = static_cast<std::int32_t>(static_cast<std::uint32_t>(clock_) +
                                               static_cast<std::uint32_t>(arguments[0].intValue()));
        return Variable();
    });
}

Variable globalOf(const VesperScript& engine, const std::string& name) try {
    return engine.pullVariable(name);
} catch (const std::runtime_error&) {
    return {};
}

void GameSession::fixSeed(std::int32_t seed) {
    VesperScript& engine = runtime_.engine;
    const Variable number = Variable::integer(seed);
    wrap("math", "randomseed", [&engine, number](const Variable& original, const std::vector<Variable>&) {
        return engine.callCallable(original, {number});
    });
    engine.nativeStack().markBase();
    static_cast<void>(runtime_.lua.runScriptString("math.randomseed(" + std::to_string(seed) + ")", "seed"));
}

Variable GameSession::update(UpdateWatcher& watcher, const Variable& original,
                             const std::vector<Variable>& arguments) {
    if (!runtime_.window) return runtime_.engine.callCallable(original, arguments);
    WindowCore& core = runtime_.window->core;
    if (core.shouldClose() && ++updatesSinceClose_ > updatesToEndIn)
        throw std::runtime_error("the game goes on although its window was closed");
    ++update_;
    clock_ += updateMilliseconds;
    watcher.beforeUpdate(update_, core);
    Variable result = runtime_.engine.callCallable(original, arguments);
    watcher.afterUpdate(update_, core);
    return result;
}

bool GameSession::showFailure(const std::string& failure, UpdateWatcher& watcher) {
    return kelmora::showFailure(runtime_, failure, [&] {
        WindowCore& core = runtime_.window->core;
        watcher.beforeUpdate(++update_, core);
        vh_updateWindow(runtime_.window);
        watcher.afterUpdate(update_, core);
    });
}

std::optional<std::string> GameSession::play(UpdateWatcher& watcher) {
    wrap("Metal", "forceUpdate", [&](const Variable& original, const std::vector<Variable>& arguments) {
        return update(watcher, original, arguments);
    });
    const std::string source = startupSourcePath(runtime_);
    try {
        VesperScript& engine = runtime_.engine;
        engine.runBytecode(engine.compileToBytecode(std::string(bootText_.begin(), bootText_.end()), source));
    } catch (const std::exception& error) {
        runtime_.engine.host().flush();
        return std::string(error.what()) + "\n" + failurePlaces(runtime_.engine, error.what(), source);
    }
    runtime_.engine.host().flush();
    return std::nullopt;
}

}  // namespace kelmora
