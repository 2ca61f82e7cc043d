#include "base/file_kind.h"

#include <sys/stat.h>

namespace kelmora {

bool pathExists(const std::string& path) {
    struct stat found {};
    return stat(path.c_str(), &found) == 0;
}

bool isDirectory(const std::string& path) {
    struct stat found {};
    return stat(path.c_str(), &found) == 0 && (found.st_mode & S_IFMT) == S_IFDIR;
}

}  // namespace kelmora
