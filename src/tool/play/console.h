#pragma once

#include <string>
#include <vector>

#include "platform/window_core.h"
#include "tool/play/console_line.h"
#include "tool/play/game_session.h"
#include "tool/play/overlay.h"
#include "tool/play/text_field.h"

namespace kelmora {

// A console over a running game, opened and closed with F12. While it is open all input is its own. What is
// watched is shown whether it is open or not.
class Console {
public:
    explicit Console(GameSession& session) : session_(session) {}
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Takes the window's input from here on; to be called before each update.
    void beforeUpdate(WindowCore& core);
    bool isOpen() const { return isOpen_; }
    std::vector<OverlayLine> lines() const;
    // In cells of the last line; -1 while it is closed.
    int caret() const;

private:
    // True for what the game does not get to see.
    bool take(const WindowEvent& event);
    void press(int key);
    void toggle();
    void enter();
    void run(const std::string& line);
    // For a line that is the console's own; false for any other.
    bool runOwn(const std::string& line);
    void completeOrTurn();
    void say(const std::string& text, PlainLetters::Colour colour);
    std::string prompt() const;

    GameSession& session_;
    WindowCore* core_ = nullptr;
    bool isOpen_ = false;
    ConsoleLanguage language_ = ConsoleLanguage::vesper;
    TextField field_;
    std::vector<std::string> due_;  // lines that run with the next update
    std::vector<OverlayLine> said_;
    std::vector<std::string> watched_;
};

}  // namespace kelmora
