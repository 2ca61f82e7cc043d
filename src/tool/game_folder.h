#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace kelmora {

// The game's folder, which holds `Resources`. Raises UsageError when there is none at the path.
std::filesystem::path findGame(const std::string& path);

// The libraries that the game's libraries.txt names, where it has no copy of its own: those of the folder
// `library` beside it.
std::vector<std::filesystem::path> librariesOf(const std::filesystem::path& game);

// The paths of the fonts that the game's fonts.txt names.
std::vector<std::string> fontsOf(const std::filesystem::path& game);

// A folder among the system's temporary ones that goes with the object.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

// Copies a game without anything that it has kept. The libraries that its libraries.txt names come from the
// folder `library` beside it unless it has its own, the fonts of its fonts.txt from where they stand.
void copyGame(const std::filesystem::path& game, const std::filesystem::path& target);

// A library or font that the game wants is only to be had by a copy.
bool lacksParts(const std::filesystem::path& game);

// What a game has kept goes with a copy of it, and comes back as the copy leaves it.
class KeptInCopy {
public:
    KeptInCopy(const std::filesystem::path& game, const std::filesystem::path& copy);
    KeptInCopy(const KeptInCopy&) = delete;
    KeptInCopy& operator=(const KeptInCopy&) = delete;
    ~KeptInCopy();

private:
    std::filesystem::path original_;
    std::filesystem::path copy_;
};

// The folders that a game's files come from, and for each where it is played: those of the copy, or the same.
std::map<std::filesystem::path, std::filesystem::path> watchedFolders(const std::filesystem::path& game,
                                                                      const std::filesystem::path& played);

// A failure of the copy told as one of the game itself.
std::string toldOf(const std::filesystem::path& game, const std::filesystem::path& copy, std::string failure);

}  // namespace kelmora
