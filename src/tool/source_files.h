#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelmora {

// The scripts below a folder, of all three languages, by path.
std::vector<std::string> sourcesBelow(const std::filesystem::path& folder);

// The folder of the game that a file belongs to: the one around its `Resources`. Empty outside of games.
std::filesystem::path gameOf(const std::string& path);

inline bool isVesperScript(const std::filesystem::path& path) {
    return path.extension() == ".vs";
}

}  // namespace kelmora
