#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>

#include "codec/codec_test_support.h"
#include "support/temporary_folder.h"

namespace vh::png {
namespace {

struct Writer {
    const char* extension;
    bool (*save)(const char* path, const unsigned char* pixels, int width, int height);
};

void PrintTo(const Writer& writer, std::ostream* out) {
    *out << writer.extension;
}

class PictureWriter : public testing::TestWithParam<Writer> {
    const kelmora::TemporaryFolder folder_;

protected:
    const std::string path_ = (folder_ / (std::string("picture.") + GetParam().extension)).string();
};

TEST_P(PictureWriter, WhatIsWrittenReadsBack) {
    std::mt19937 random(19);
    for (const auto& [width, height] : std::vector<std::pair<int, int>>{
             {1, 1}, {3, 7}, {64, 64}, {65, 129}, {1, 700}, {70000, 1}, {257, 300}}) {
        if (width > 65535 && std::string(GetParam().extension) == "tga") continue;
        Bytes pixels = random_bytes(random, static_cast<std::size_t>(width * height * 4));
        // Flat stretches of every length, and one that fills a tile.
        for (std::size_t i = 4; i < pixels.size() * 2 / 3; ++i) {
            if (i % 97 > 20) pixels[i] = pixels[i - 4];
        }
        if (width == 64) std::fill(pixels.begin(), pixels.end(), std::uint8_t{9});
        ASSERT_TRUE(GetParam().save(path_.c_str(), pixels.data(), width, height));
        Image image;
        ASSERT_TRUE(load_file(path_.c_str(), image));
        EXPECT_EQ(image.width, width);
        EXPECT_EQ(image.height, height);
        EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), image.pixels.begin(), image.pixels.end()));
    }
}

TEST_P(PictureWriter, RefusesWhatItCannotWrite) {
    const auto save = GetParam().save;
    const Bytes pixel(4);
    EXPECT_FALSE(save(nullptr, pixel.data(), 1, 1));
    EXPECT_FALSE(save(path_.c_str(), nullptr, 1, 1));
    EXPECT_FALSE(save(path_.c_str(), pixel.data(), 0, 1));
    EXPECT_FALSE(save(path_.c_str(), pixel.data(), 1, -1));
    EXPECT_FALSE(save(path_.c_str(), pixel.data(), 32768, 32768));
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_FALSE(save("/no/such/folder/x", pixel.data(), 1, 1));
    if (!std::filesystem::exists("/dev/full")) return;
    EXPECT_FALSE(save("/dev/full", pixel.data(), 1, 1));
    EXPECT_FALSE(save("/dev/full", Bytes(400 * 400 * 4).data(), 400, 400));
}

INSTANTIATE_TEST_SUITE_P(Formats, PictureWriter,
                         testing::Values(Writer{"bmp", save_bmp_rgba8_file},
                                         Writer{"tga", save_tga_rgba8_file},
                                         Writer{"xcf", save_xcf_rgba8_file}),
                         [](const auto& entry) { return std::string(entry.param.extension); });

Bytes bytes_of(const std::string& path) {
    return kelmora::readWholeFileBytes(path).value_or(Bytes{});
}

TEST(PictureHeaders, AreThoseOfTheFormats) {
    const std::string path = testing::TempDir() + "/kelmora_picture_header";
    const Bytes pixels{1, 2, 3, 4, 5, 6, 7, 8};
    ASSERT_TRUE(save_bmp_rgba8_file(path.c_str(), pixels.data(), 1, 2));
    const Bytes bmp = bytes_of(path);
    ASSERT_EQ(bmp.size(), 130u);
    const std::vector<std::uint32_t> fields{108, 1, 2,        1 | 32 << 16, 3,    8,          2835,      2835,
                                            0,   0, 0xFF0000, 0xFF00,       0xFF, 0xFF000000, 0x73524742};
    for (std::size_t i = 0; i < fields.size(); ++i)
        EXPECT_EQ(load_u32(bmp.data() + 14 + 4 * i), fields[i]) << i;
    EXPECT_EQ(load_u32(bmp.data() + 2), 130u);
    EXPECT_EQ(load_u32(bmp.data() + 10), 122u);
    EXPECT_EQ(Bytes(bmp.end() - 8, bmp.end()), (Bytes{7, 6, 5, 8, 3, 2, 1, 4}));
    ASSERT_TRUE(save_tga_rgba8_file(path.c_str(), pixels.data(), 1, 2));
    EXPECT_EQ(bytes_of(path),
              (Bytes{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 2, 0, 32, 0x28, 3, 2, 1, 4, 7, 6, 5, 8}));
    EXPECT_FALSE(save_tga_rgba8_file(path.c_str(), Bytes(65536 * 4).data(), 65536, 1));
    std::filesystem::remove(path);
}

}  // namespace
}  // namespace vh::png
