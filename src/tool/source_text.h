#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "base/whole_file.h"

namespace kelmora {

// The text of a script or image that a command names.
inline std::string readSource(const std::string& path) {
    auto source = readWholeFile(path);
    if (!source) throw std::runtime_error("Failed to open script file: " + path);
    return std::move(*source);
}

}  // namespace kelmora
