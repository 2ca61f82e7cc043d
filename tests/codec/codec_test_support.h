#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "base/whole_file.h"
#include "codec/crc32.h"
#include "codec/load_store.h"
#include "codec/png.h"

namespace vh::png {

using Bytes = std::vector<unsigned char>;

inline std::string image_path(const std::string& name) {
    return std::string(KELMORA_SOURCE_DIR) + "/tests/images/" + name;
}

inline Bytes read_input(const std::string& name) {
    return kelmora::readWholeFileBytes(image_path(name)).value_or(Bytes{});
}

inline bool load(const Bytes& file, Image& image) {
    return load_memory(file.data(), static_cast<unsigned>(file.size()), image);
}

inline bool is_reset(const Image& image) {
    return image.width == 0 && image.height == 0 && image.pixels.empty();
}

inline Bytes random_bytes(std::mt19937& random, std::size_t size) {
    Bytes bytes(size);
    for (auto& byte : bytes) byte = static_cast<unsigned char>(random());
    return bytes;
}

}  // namespace vh::png
