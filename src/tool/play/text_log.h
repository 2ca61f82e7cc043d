#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tool/play/game_session.h"

namespace kelmora {

// The words that a game shows: those whose pictures it holds, and those that it drew since the last update.
class TextLog {
public:
    // Listens to a session, which it does not outlive.
    explicit TextLog(GameSession& session);

    bool shows(const std::string& words) const;
    // Since the last update.
    std::vector<std::string> drawn() const;
    // For a report, not too many.
    std::string summary() const;
    void endUpdate() { drawn_.clear(); }

private:
    void add(const void* picture, const std::string& text);
    void drop(const void* picture);
    // Each once, the newest first.
    std::vector<std::string> shown() const;

    // By when they were drawn.
    using Texts = std::map<std::uint64_t, std::string>;
    std::map<const void*, std::uint64_t> pictures_;
    Texts held_;
    Texts drawn_;
    std::uint64_t count_ = 0;
};

// With single blanks instead of runs of blanks and line ends.
std::string onOneLine(const std::string& text);

}  // namespace kelmora
