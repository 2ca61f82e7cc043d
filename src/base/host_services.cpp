#include "base/host_services.h"

#include "base/file_kind.h"

namespace kelmora {

std::FILE* HostServices::openFile(const std::string& path, const std::string& mode) {
    return isDirectory(path) ? nullptr : std::fopen(path.c_str(), mode.c_str());
}

}  // namespace kelmora
