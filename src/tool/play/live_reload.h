#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tool/play/file_watch.h"
#include "tool/play/game_session.h"
#include "tool/play/loaded_pictures.h"
#include "tool/play/overlay.h"

namespace kelmora {

// Brings what an author saves into the running game, between two of its updates. What fails is told over the
// game's picture, and the game goes on as it was.
class LiveReload {
public:
    // `played` is the folder that is played: the game's own, or a copy of it.
    LiveReload(GameSession& session, std::filesystem::path game, std::filesystem::path played);

    // Takes over what has changed since the last look.
    void look();
    // What there is to tell in this update; a note goes after a while, a fault stays.
    std::vector<OverlayLine> lines();
    // The last thing that was told, for a game without a window.
    const std::string& told() const { return told_; }

private:
    void takeOver(const std::filesystem::path& file);
    void takeScript(const std::filesystem::path& file, const std::filesystem::path& played);
    void takePicture(const std::filesystem::path& file);
    std::string placesOfFailure(const std::string& message) const;
    bool isStory(const std::filesystem::path& played) const;
    void tellStoryAnew();
    void runChanged(const std::string& source, const std::string& before,
                    const std::filesystem::path& played);
    void call(const Variable& function, const std::vector<Variable>& arguments);
    void callNamed(const char* name, const std::vector<Variable>& arguments);
    std::filesystem::path playedPath(const std::filesystem::path& file) const;
    std::string shortName(const std::filesystem::path& file) const;
    void tell(const std::string& words, bool isFault);

    GameSession& session_;
    std::filesystem::path game_;
    std::filesystem::path played_;
    std::map<std::filesystem::path, std::filesystem::path> folders_;  // watched, and where they are played
    FileWatch watch_;
    LoadedPictures pictures_;
    std::map<std::filesystem::path, std::string> texts_;  // scripts as they were taken over last
    std::string told_;
    bool isFault_ = false;
    int age_ = 0;  // updates since something was told
};

}  // namespace kelmora
