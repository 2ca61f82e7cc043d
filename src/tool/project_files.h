#pragma once

#include <span>
#include <string_view>

namespace kelmora {

// One file of a new project. The first folder of its path is the kind of game; `@NAME@` in its text stands
// for the game's name.
struct ProjectFile {
    std::string_view path;
    std::span<const unsigned char> bytes;
};

// What the build puts into the authors' tool, by path.
std::span<const ProjectFile> projectFiles();

}  // namespace kelmora
