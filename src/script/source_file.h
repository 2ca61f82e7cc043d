#pragma once

#include <string>

namespace kelmora {

// Where a source came from. Both are empty for text that came from no file.
struct SourceFile {
    std::string directory;  // without a separator at its end
    std::string path;

    bool isKnown() const { return !path.empty() || !directory.empty(); }
};

}  // namespace kelmora
