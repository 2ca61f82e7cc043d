#pragma once

#include <string>

#include "tool/play/game_session.h"

namespace kelmora {

// Begins a game elsewhere: a novel at a scene or a mark, as soon as it shows its title, other games at a
// label of their scripts, in their first update.
class StartPlace {
public:
    StartPlace(GameSession& session, std::string name) : session_(session), name_(std::move(name)) {}

    // Raises std::runtime_error where there is no such place.
    void beforeUpdate();

private:
    void startNovel();
    void jump();

    GameSession& session_;
    std::string name_;
    bool isDone_ = false;
};

}  // namespace kelmora
