#include "base/whole_file.h"

#include <cstdio>
#include <memory>

namespace kelmora {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

template <typename Container>
std::optional<Container> readAll(const std::string& path) {
    FileHandle file(std::fopen(path.c_str(), "rb"));
    if (!file) return std::nullopt;
    Container content;
    // Grown by what was really read: a size that the file system claims is never trusted with memory.
    constexpr std::size_t blockSize = 65536;
    std::size_t filled = 0;
    for (;;) {
        content.resize(filled + blockSize);
        const std::size_t count = std::fread(content.data() + filled, 1, blockSize, file.get());
        filled += count;
        if (count < blockSize) break;
    }
    if (std::ferror(file.get()) != 0) return std::nullopt;
    content.resize(filled);
    return content;
}

bool writeAll(const std::string& path, const void* data, std::size_t size) {
    FileHandle file(std::fopen(path.c_str(), "wb"));
    if (!file) return false;
    const bool written = size == 0 || std::fwrite(data, 1, size, file.get()) == size;
    return std::fclose(file.release()) == 0 && written;
}

}  // namespace

std::optional<std::string> readWholeFile(const std::string& path) {
    return readAll<std::string>(path);
}

std::optional<std::vector<unsigned char>> readWholeFileBytes(const std::string& path) {
    return readAll<std::vector<unsigned char>>(path);
}

bool writeWholeFile(const std::string& path, std::string_view content) {
    return writeAll(path, content.data(), content.size());
}

bool writeWholeFileBytes(const std::string& path, std::span<const unsigned char> content) {
    return writeAll(path, content.data(), content.size());
}

}  // namespace kelmora
