#include "tool/play/roam_player.h"

#include "platform/window_core.h"
#include "tool/play/input_text.h"

namespace kelmora {
namespace {

constexpr int updatesForPicture = 24;
// Of calls, rounds and jumps; seconds of work.
constexpr std::uint64_t longestUpdate = 100'000'000;

}  // namespace

RoamPlayer::RoamPlayer(GameSession& session, std::uint32_t seed, int updates, Coverage& coverage)
    : session_(session),
      novel_(session.runtime().engine),
      coverage_(coverage),
      texts_(session),
      drawing_(session, updatesForPicture),
      hand_(seed),
      lastUpdate_(updates) {
    session.runtime().engine.setStepLimit(longestUpdate);
}

void RoamPlayer::beforeUpdate(int update, WindowCore& core) {
    update_ = update;
    std::vector<WindowEvent> events;
    if (update < lastUpdate_)
        events = hand_.next(novel_, coverage_, core.clientWidth(), core.clientHeight());
    else if (update == lastUpdate_)
        events.push_back(WindowEvent::closeRequested());
    for (const WindowEvent& event : events) {
        const std::string line = recordedLine(event);
        if (line.empty()) continue;
        // Where a button goes down is told by the line before it.
        recording_ += std::to_string(update) + " " + line + "\n";
        core.handle(event);
    }
    drawing_.beforeUpdate(update, novel_.isNovel());
    session_.runtime().engine.setStepLimit(longestUpdate);
}

void RoamPlayer::afterUpdate(int, WindowCore&) {
    coverage_.see(novel_);
    if (!novel_.isNovel())
        for (const std::string& text : texts_.drawn()) coverage_.addText(text);
    texts_.endUpdate();
}

}  // namespace kelmora
