#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace kelmora {

// Sees which files below some folders change, by their times and sizes. What the game keeps (`volatile`) does
// not count, nor does a file that is empty at the moment: it is being written.
class FileWatch {
public:
    explicit FileWatch(std::vector<std::filesystem::path> folders);

    // Since the last look, in the order of their names. Files that are new count, those that went do not.
    std::vector<std::filesystem::path> changed();
    // All that are there now.
    std::vector<std::filesystem::path> files() const;

private:
    struct State {
        std::filesystem::file_time_type time;
        std::uintmax_t size;
        bool operator==(const State&) const = default;
    };
    using States = std::map<std::filesystem::path, State>;

    States look() const;

    std::vector<std::filesystem::path> folders_;
    States states_;
};

}  // namespace kelmora
