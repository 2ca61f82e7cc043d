#pragma once

#include <string>

#include "tool/play/game_session.h"
#include "tool/play/random_hand.h"
#include "tool/play/text_log.h"
#include "tool/play/thin_drawing.h"

namespace kelmora {

// One run of a game, played at random until it ends or has had its updates.
class RoamPlayer : public UpdateWatcher {
public:
    RoamPlayer(GameSession& session, std::uint32_t seed, int updates, Coverage& coverage);

    void beforeUpdate(int update, WindowCore& core) override;
    void afterUpdate(int update, WindowCore& core) override;

    int updates() const { return update_; }
    // What was pressed, as a recorded input.
    const std::string& recording() const { return recording_; }

private:
    GameSession& session_;
    NovelView novel_;
    Coverage& coverage_;
    TextLog texts_;
    ThinDrawing drawing_;
    RandomHand hand_;
    const int lastUpdate_;
    int update_ = 0;
    std::string recording_;
};

}  // namespace kelmora
