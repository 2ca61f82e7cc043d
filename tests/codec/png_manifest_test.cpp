#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "codec/codec_test_support.h"

namespace vh::png {
namespace {

struct Entry {
    std::string file;
    bool good = false;
    int width = 0;
    int height = 0;
    std::uint32_t checksum = 0;
};

std::vector<Entry> read_manifest() {
    std::ifstream manifest(image_path("manifest.txt"));
    std::vector<Entry> entries;
    for (std::string line; std::getline(manifest, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        Entry entry;
        std::string verdict;
        fields >> entry.file >> verdict >> entry.width >> entry.height >> std::hex >> entry.checksum;
        entry.good = verdict == "OK";
        entries.push_back(entry);
    }
    return entries;
}

TEST(PngManifest, EveryInputReadsAsItsLineSays) {
    const auto entries = read_manifest();
    ASSERT_GT(entries.size(), 150u);
    for (const Entry& entry : entries) {
        const Bytes file = read_input(entry.file);
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
}

TEST(PngManifest, ListsEveryPngOfTheFolder) {
    std::set<std::string> listed;
    for (const Entry& entry : read_manifest()) listed.insert(entry.file);
    for (const auto& file : std::filesystem::directory_iterator(image_path(""))) {
        const auto name = file.path().filename().string();
        if (name.ends_with(".png")) {
            EXPECT_EQ(listed.count(name), 1u) << name;
        }
    }
}

}  // namespace
}  // namespace vh::png
