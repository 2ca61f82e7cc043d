#include <algorithm>
#include <string>

#include "platform/system.h"
#include "platform/windows/handle.h"

namespace {

using kelmora::Handle;

bool writeAll(HANDLE file, const char* data, std::size_t size) {
    constexpr std::size_t blockSize = std::size_t{1} << 20;
    while (size > 0) {
        DWORD written = 0;
        const auto wanted = static_cast<DWORD>(std::min(size, blockSize));
        if (!WriteFile(file, data, wanted, &written, nullptr) || written == 0) return false;
        data += written;
        size -= written;
    }
    return true;
}

bool writeNewFile(const std::string& path, const void* content, std::size_t size) {
    const Handle file(
        CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && writeAll(file.get(), static_cast<const char*>(content), size) &&
           FlushFileBuffers(file.get());
}

}  // namespace

bool platform_replace_file(const char* path, const void* content, std::size_t size) {
    const std::string fresh = std::string(path) + ".new";
    if (writeNewFile(fresh, content, size) &&
        MoveFileExA(fresh.c_str(), path, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    DeleteFileA(fresh.c_str());
    return false;
}
