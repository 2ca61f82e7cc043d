#include "tool/play/file_watch.h"

#include <utility>

namespace kelmora {

namespace fs = std::filesystem;

FileWatch::FileWatch(std::vector<fs::path> folders) : folders_(std::move(folders)), states_(look()) {}

FileWatch::States FileWatch::look() const {
    States states;
    std::error_code error;
    for (const fs::path& folder : folders_) {
        fs::recursive_directory_iterator entry(folder, error);
        for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
            if (entry->path().filename() == "volatile") entry.disable_recursion_pending();
            std::error_code gone;
            if (!entry->is_regular_file(gone)) continue;
            const std::uintmax_t size = entry->file_size(gone);
            const fs::file_time_type time = entry->last_write_time(gone);
            if (!gone && size > 0) states.emplace(entry->path(), State{time, size});
        }
    }
    return states;
}

std::vector<fs::path> FileWatch::changed() {
    States now = look();
    std::vector<fs::path> paths;
    for (const auto& [path, state] : now) {
        const auto before = states_.find(path);
        if (before == states_.end() || before->second != state) paths.push_back(path);
    }
    states_ = std::move(now);
    return paths;
}

std::vector<fs::path> FileWatch::files() const {
    std::vector<fs::path> paths;
    for (const auto& [path, state] : states_) paths.push_back(path);
    return paths;
}

}  // namespace kelmora
