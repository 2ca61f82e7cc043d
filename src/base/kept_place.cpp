#include "base/kept_place.h"

#include <filesystem>

namespace kelmora {
namespace {

std::string keptFolder;  // plain, as it is compared; empty while everything lies where it is named
std::string keptPlace;

std::string plain(const std::string& path) {
    return std::filesystem::path(path).lexically_normal().generic_string();
}

}  // namespace

void keepElsewhere(const std::string& folder, const std::string& place) {
    keptFolder = plain(folder);
    keptPlace = place;
}

std::string placeOf(const std::string& path) {
    if (keptFolder.empty()) return path;
    const std::string name = plain(path);
    return name.starts_with(keptFolder) ? keptPlace + name.substr(keptFolder.size()) : path;
}

}  // namespace kelmora
