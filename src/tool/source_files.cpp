#include "tool/source_files.h"

#include <algorithm>

#include "tool/guest_tool.h"

namespace kelmora {

namespace fs = std::filesystem;

std::vector<std::string> sourcesBelow(const fs::path& folder) {
    std::vector<std::string> found;
    std::error_code ignored;
    for (const auto& entry : fs::recursive_directory_iterator(folder, ignored)) {
        const bool isSource =
            isVesperScript(entry.path()) || guestToolForSource(entry.path().string()) != nullptr;
        if (isSource && entry.is_regular_file(ignored)) found.push_back(entry.path().string());
    }
    std::sort(found.begin(), found.end());
    return found;
}

fs::path gameOf(const std::string& path) {
    std::error_code ignored;
    for (fs::path folder = fs::absolute(path, ignored).parent_path(); folder.has_relative_path();
         folder = folder.parent_path())
        if (folder.filename() == "Resources" && fs::is_directory(folder, ignored))
            return folder.parent_path();
    return {};
}

}  // namespace kelmora
