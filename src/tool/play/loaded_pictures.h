#pragma once

#include <filesystem>
#include <map>

#include "tool/play/game_session.h"

namespace kelmora {

// Which picture of a game came from which file.
class LoadedPictures {
public:
    // Listens to a session, which it does not outlive.
    explicit LoadedPictures(GameSession& session);

    // Loads every picture that came from the file anew, in place: who holds it sees the new one, of its new
    // size. The number of them. Raises std::runtime_error when the file cannot be read.
    int reload(const std::filesystem::path& file);

private:
    std::map<const void*, std::filesystem::path> files_;
};

}  // namespace kelmora
