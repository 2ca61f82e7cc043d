#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/whole_file.h"
#include "codec/crc32.h"
#include "codec/load_store.h"
#include "codec/png.h"
#include "support/places.h"

namespace vh::png {

using Bytes = std::vector<unsigned char>;

inline std::string image_path(const std::string& name) {
    return kelmora::sourceFolder() + "/tests/images/" + name;
}

inline Bytes read_input(const std::string& name) {
    return kelmora::readWholeFileBytes(image_path(name)).value_or(Bytes{});
}

inline std::string picture_path(const std::string& name) {
    return kelmora::sourceFolder() + "/tests/pictures/" + name;
}

inline Bytes read_picture(const std::string& name) {
    return kelmora::readWholeFileBytes(picture_path(name)).value_or(Bytes{});
}

inline bool load(const Bytes& file, Image& image) {
    return load_memory(file.data(), static_cast<unsigned>(file.size()), image);
}

inline bool is_reset(const Image& image) {
    return image.width == 0 && image.height == 0 && image.pixels.empty();
}

inline void expect_whole_or_reset(const Bytes& file, const std::string& what) {
    Image image;
    if (!load(file, image)) {
        EXPECT_TRUE(is_reset(image)) << what;
        return;
    }
    EXPECT_EQ(image.pixels.size(), std::size_t(image.width) * std::size_t(image.height) * 4) << what;
}

// A line of a folder's manifest.txt.
struct ManifestEntry {
    std::string file;
    bool good = false;
    int width = 0;
    int height = 0;
    std::uint32_t checksum = 0;
    std::string source;  // of the checksum, as the manifest's head explains
};

inline std::vector<ManifestEntry> read_manifest(const std::string& folder) {
    std::ifstream manifest(folder + "manifest.txt");
    std::vector<ManifestEntry> entries;
    for (std::string line; std::getline(manifest, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        ManifestEntry entry;
        std::string verdict;
        fields >> entry.file >> verdict >> entry.width >> entry.height >> std::hex >> entry.checksum >>
            entry.source;
        entry.good = verdict == "OK";
        entries.push_back(entry);
    }
    return entries;
}

// Every input reads as its line says, and every file of the folder has a line.
inline void check_manifest(const std::string& folder) {
    std::set<std::string> listed{"manifest.txt"};
    for (const ManifestEntry& entry : read_manifest(folder)) {
        listed.insert(entry.file);
        const Bytes file = kelmora::readWholeFileBytes(folder + entry.file).value_or(Bytes{});
        ASSERT_FALSE(file.empty()) << entry.file;
        Image image;
        image.width = 5;
        const bool loaded = load(file, image);
        EXPECT_EQ(loaded, entry.good) << entry.file;
        if (!loaded) {
            EXPECT_TRUE(is_reset(image)) << entry.file;
            continue;
        }
        EXPECT_EQ(image.width, entry.width) << entry.file;
        EXPECT_EQ(image.height, entry.height) << entry.file;
        EXPECT_EQ(crc32(image.pixels), entry.checksum) << entry.file;
    }
    for (const auto& file : std::filesystem::directory_iterator(folder))
        EXPECT_EQ(listed.count(file.path().filename().string()), 1u) << file.path();
}

inline Bytes random_bytes(std::mt19937& random, std::size_t size) {
    Bytes bytes(size);
    for (auto& byte : bytes) byte = static_cast<unsigned char>(random());
    return bytes;
}

}  // namespace vh::png
