#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "platform/system.h"

namespace {

bool writeAll(int file, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(file, data, size);
        if (written <= 0) return false;
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool writeNewFile(const std::string& path, const void* content, std::size_t size) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0) return false;
    const bool written = writeAll(file, static_cast<const char*>(content), size) && ::fsync(file) == 0;
    return ::close(file) == 0 && written;
}

// The new name is on the disk only when its folder is.
void syncFolderOf(const std::string& path) {
    const std::size_t separator = path.find_last_of('/');
    const std::string folder = separator == std::string::npos ? "." : path.substr(0, separator + 1);
    const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) return;
    ::fsync(file);
    ::close(file);
}

}  // namespace

bool platform_replace_file(const char* path, const void* content, std::size_t size) {
    const std::string target = path;
    const std::string fresh = target + ".new";
    if (!writeNewFile(fresh, content, size) || std::rename(fresh.c_str(), target.c_str()) != 0) {
        std::remove(fresh.c_str());
        return false;
    }
    syncFolderOf(target);
    return true;
}
