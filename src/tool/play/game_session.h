#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

#include "bindings/runtime.h"

namespace kelmora {

class WindowCore;

// Nothing for a name that was never set.
Variable globalOf(const VesperScript& engine, const std::string& name);

// Sees the updates of a game's window, counted from 1. What it raises ends the game.
class UpdateWatcher {
public:
    UpdateWatcher() = default;
    UpdateWatcher(const UpdateWatcher&) = delete;
    UpdateWatcher& operator=(const UpdateWatcher&) = delete;
    virtual ~UpdateWatcher() = default;

    // Before the display's events arrive; events given to the core arrive with this update.
    virtual void beforeUpdate(int update, WindowCore& core) = 0;
    // When its picture is there.
    virtual void afterUpdate(int update, WindowCore& core) = 0;
};

// One game, played in this process by the authors' tool.
class GameSession {
public:
    // Without a display a game's clock goes by this at each of its updates.
    static constexpr std::int32_t updateMilliseconds = 33;

    // The boot script is its text. Without a display everything goes as fast as it can, and the scripts'
    // clocks by updates and sleeps.
    GameSession(HostServices& host, std::span<const unsigned char> bootText,
                const std::filesystem::path& game, bool headless);
    GameSession(const GameSession&) = delete;
    GameSession& operator=(const GameSession&) = delete;
    ~GameSession();

    Runtime& runtime() { return runtime_; }
    // From here on every seeding of the random numbers, of the scripts and of VesperLua, is this one.
    void fixSeed(std::int32_t seed);
    // Puts a function around a module's member: it gets the member and its arguments. Nothing happens where
    // there is no such member.
    using Around = std::function<Variable(const Variable&, const std::vector<Variable>&)>;
    void wrap(const char* module, const char* member, Around around);

    // Until the game ends. What it fails with, as it goes to standard error; nothing when it did not. A game
    // that goes on for long after its window was asked to close fails.
    std::optional<std::string> play(UpdateWatcher& watcher);
    // Shows the failure in the game's window, where there is one. True when the author wants the game anew.
    bool showFailure(const std::string& failure, UpdateWatcher& watcher);

    int updates() const { return update_; }
    // Updates are counted on from there.
    void countFrom(int update) { update_ = update; }

private:
    void setClockByUpdates();
    Variable update(UpdateWatcher& watcher, const Variable& original, const std::vector<Variable>& arguments);

    std::span<const unsigned char> bootText_;
    Runtime runtime_;
    int update_ = 0;
    int updatesSinceClose_ = 0;
    std::int32_t clock_ = 0;       // milliseconds, where it goes by updates
    std::int32_t frameClock_ = 0;  // when it was last asked for
};

}  // namespace kelmora
