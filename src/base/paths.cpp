#include "base/paths.h"

#include <algorithm>

namespace kelmora {

std::string normalisePath(const std::string& path) {
    std::string normalised = path;
    std::replace(normalised.begin(), normalised.end(), '\\', '/');
    return normalised;
}

std::string sourceDirectoryForPath(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

bool isAbsolutePath(const std::string& path) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    if (path.empty()) return false;
    return path[0] == '/' || path[0] == '\\' || (path.size() > 1 && isLetter(path[0]) && path[1] == ':');
}

std::string joinPath(const std::string& base, const std::string& path) {
    if (base.empty() || base.back() == '/') return base + path;
    return base + "/" + path;
}

}  // namespace kelmora
