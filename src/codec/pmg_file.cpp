#include "codec/pmg_file.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/byte_reader.h"
#include "base/byte_writer.h"
#include "base/paths.h"
#include "base/whole_file.h"
#include "image/image_registry.h"

namespace kelmora {
namespace {

constexpr std::uint64_t headerBytes = 32;  // two sizes for each of the two pictures
constexpr std::uint64_t maximumSize = std::numeric_limits<std::uint32_t>::max();

// Bytes of a picture; false when they overflow 32 bits or the pixels that there should be are missing.
bool pictureBytes(std::int32_t width, std::int32_t height, const unsigned char* pixels,
                  std::uint64_t& bytes) {
    if (width < 0 || height < 0) return false;
    const auto count = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    if (count > maximumSize / 4) return false;
    bytes = count * 4;
    return bytes == 0 || pixels != nullptr;
}

void writePicture(ByteWriter& out, std::int32_t width, std::int32_t height,
                  std::span<const unsigned char> pixels) {
    out.u64(static_cast<std::uint64_t>(width));
    out.u64(static_cast<std::uint64_t>(height));
    out.bytes(pixels);
}

// A picture's size and pixels; the pixels are borrowed from the file.
struct Picture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::span<const unsigned char> pixels;
};

bool readPicture(ByteReader& reader, Picture& picture) {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    if (!reader.readU64(width) || !reader.readU64(height)) return false;
    constexpr std::uint64_t limit = std::uint64_t{1} << 31;
    if (width >= limit || height >= limit || width * height > maximumSize / 4) return false;
    picture.width = static_cast<std::int32_t>(width);
    picture.height = static_cast<std::int32_t>(height);
    return reader.readBytes(static_cast<std::size_t>(width * height * 4), picture.pixels);
}

PixelMemory copyPixels(std::span<const unsigned char> pixels) {
    if (pixels.empty()) return nullptr;
    PixelMemory copy = allocatePixels(pixels.size());
    std::memcpy(copy.get(), pixels.data(), pixels.size());
    return copy;
}

}  // namespace

bool hasPMGExtension(const char* path) {
    return path && std::string_view(path).ends_with(".pmg");
}

bool savePlushImage(const PlushImage* image, const char* path) {
    if (!image || !path || !hasPMGExtension(path)) return false;
    std::uint64_t pictureSize = 0;
    std::uint64_t mapSize = 0;
    if (!pictureBytes(image->width, image->height, image->pixels, pictureSize)) return false;
    if (!pictureBytes(image->reflectWidth, image->reflectHeight, image->reflectPixels, mapSize)) return false;
    if (pictureSize + mapSize + headerBytes > maximumSize) return false;
    ByteWriter file;
    file.reserve(static_cast<std::size_t>(pictureSize + mapSize + headerBytes));
    writePicture(file, image->width, image->height, {image->pixels, static_cast<std::size_t>(pictureSize)});
    writePicture(file, image->reflectWidth, image->reflectHeight,
                 {image->reflectPixels, static_cast<std::size_t>(mapSize)});
    return writeWholeFileBytes(normalisePath(path), file.take());
}

PlushImage* loadPlushImage(const char* path) {
    if (!hasPMGExtension(path)) return nullptr;
    const auto file = readWholeFileBytes(normalisePath(path));
    if (!file) return nullptr;
    ByteReader reader(*file);
    Picture picture;
    Picture map;
    if (!readPicture(reader, picture) || !readPicture(reader, map)) return nullptr;
    PlushImage* image = adoptPixels(copyPixels(picture.pixels), picture.width, picture.height);
    image->reflectWidth = map.width;
    image->reflectHeight = map.height;
    image->reflectPixels = copyPixels(map.pixels).release();
    return image;
}

}  // namespace kelmora
