#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tool/package/archive.h"

namespace kelmora {

enum class PackageSystem { linux, windows };

struct PackagePlan {
    std::filesystem::path game;
    std::string name;
    PackageSystem system = PackageSystem::linux;
    std::filesystem::path program;   // the executable of that system
    std::filesystem::path licences;  // a folder of more licences, or empty
};

// All that players get, below one folder of the game's name: a launcher, the program in `bin`, Resources with
// their mark, Libraries, Licences, an icon and a README.txt. What the game has kept on this machine is left
// out.
std::vector<ArchiveFile> packageFiles(const PackagePlan& plan);

}  // namespace kelmora
