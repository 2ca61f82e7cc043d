#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/game_session.h"

namespace kelmora {

// The words that a game shows: those whose pictures it holds, and those that it drew since the last update.
class TextLog {
public:
    // Listens to a session, which it does not outlive.
    explicit TextLog(GameSession& session);

    bool shows(const std::string& words) const;
    // For a report, the newest first and not too many.
    std::string summary() const;
    void endUpdate() { drawn_.clear(); }

private:
    std::vector<std::string> shown() const;

    std::map<const void*, std::string> held_;
    std::vector<std::string> drawn_;
};

// With single blanks instead of runs of blanks and line ends.
std::string onOneLine(const std::string& text);

}  // namespace kelmora
