#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "base/whole_file.h"
#include "support/places.h"

namespace kelmora {

struct ScriptFile {
    std::string path;
    std::string source;
};

// Every VesperScript below these folders of the checkout, by path.
inline std::vector<ScriptFile> scriptsBelow(const std::vector<std::string>& folders) {
    std::vector<ScriptFile> found;
    for (const std::string& folder : folders)
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(std::filesystem::path(sourceFolder()) / folder))
            if (entry.path().extension() == ".vs")
                found.push_back(
                    {entry.path().generic_string(), readWholeFile(entry.path().string()).value()});
    std::sort(found.begin(), found.end(),
              [](const ScriptFile& a, const ScriptFile& b) { return a.path < b.path; });
    return found;
}

inline std::vector<ScriptFile> allScripts() {
    return scriptsBelow({"games", "src/host/boot", "src/tool/projects", "tests"});
}

}  // namespace kelmora
