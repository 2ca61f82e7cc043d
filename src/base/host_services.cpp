#include "base/host_services.h"

#include "base/file_kind.h"
#include "base/kept_place.h"

namespace kelmora {

std::FILE* HostServices::openFile(const std::string& path, const std::string& mode) {
    const std::string place = placeOf(path);
    return isDirectory(place) ? nullptr : std::fopen(place.c_str(), mode.c_str());
}

}  // namespace kelmora
