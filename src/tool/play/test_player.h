#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tool/play/game_session.h"
#include "tool/play/play_script.h"
#include "tool/play/text_log.h"

namespace kelmora {

// Plays the steps of a test, each when the one before is done, and closes the game's window behind the last.
// What is expected may come late: it is waited for.
class TestPlayer : public UpdateWatcher {
public:
    // Updates until what is expected has failed to come: ten seconds of a usual game.
    static constexpr int patience = 300;

    // Pictures are files of the folder.
    TestPlayer(GameSession& session, std::vector<PlayStep> steps, std::filesystem::path folder);

    void beforeUpdate(int update, WindowCore& core) override;
    void afterUpdate(int update, WindowCore& core) override;

    bool isDone() const { return next_ == steps_.size() && failure_.empty(); }
    // Why the step at `line` failed; empty when none did.
    const std::string& failure() const { return failure_; }
    // Of the step that failed, or is not done.
    int line() const { return next_ < steps_.size() ? steps_[next_].line : 0; }
    // What else the report tells.
    const std::vector<std::string>& notes() const { return notes_; }
    int updates() const { return update_; }

private:
    // True when the step is done, in the update of the call; false when it wants to see the next one.
    bool advance(const PlayStep& step, WindowCore& core);
    bool press(int key, WindowCore& core);
    bool click(const PlayStep& step, WindowCore& core);
    bool choose(const PlayStep& step, WindowCore& core);
    bool expectVariable(const PlayStep& step);
    bool waitFor(bool isThere, const std::string& complaint);
    Variable variable(const std::string& name) const;
    // The number of the item of a novel's screen that has the words, from 1; 0 where there is none.
    int itemWith(const std::string& words) const;
    bool itemsAreOpen() const;
    void compare(const PlayStep& step, const WindowCore& core);
    void fail(const std::string& message) { failure_ = message; }

    GameSession& session_;
    std::vector<PlayStep> steps_;
    std::filesystem::path folder_;
    TextLog texts_;
    std::size_t next_ = 0;
    int part_ = 0;  // of the step: updates since it began
    int update_ = 0;
    bool dueShot_ = false;
    std::string failure_;
    std::vector<std::string> notes_;
};

}  // namespace kelmora
