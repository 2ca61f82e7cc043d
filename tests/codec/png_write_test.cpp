#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "codec/codec_test_support.h"
#include "codec/inflate.h"
#include "codec/png_chunks.h"
#include "codec/png_filter.h"
#include "codec/png_unfilter.h"

namespace vh::png {
namespace {

class PngWriter : public testing::Test {
protected:
    void TearDown() override { std::filesystem::remove(path_); }

    Bytes write(const Bytes& pixels, int width, int height) {
        EXPECT_TRUE(save_png_rgba8_file(path_.c_str(), pixels.data(), width, height));
        return kelmora::readWholeFileBytes(path_).value_or(Bytes{});
    }
    // The data of all IDAT chunks.
    static Bytes stream_of(const Bytes& file) {
        ParsedPng parsed;
        EXPECT_TRUE(parse_png(file, parsed));
        Bytes stream;
        for (const ByteSpan span : parsed.idat) stream.insert(stream.end(), span.begin(), span.end());
        return stream;
    }

    const std::string path_ = testing::TempDir() + "/kelmora_png_write_" +
                              testing::UnitTest::GetInstance()->current_test_info()->name() + ".png";
};

TEST_F(PngWriter, OnePixelIsOneStoredBlockOfFiveBytes) {
    const Bytes pixel{1, 2, 3, 4};
    const Bytes stream = stream_of(write(pixel, 1, 1));
    EXPECT_EQ(Bytes(stream.begin(), stream.end() - 4), (Bytes{0x78, 1, 1, 5, 0, 0xFA, 0xFF, 0, 1, 2, 3, 4}));
}

TEST_F(PngWriter, WhatIsWrittenReadsBack) {
    std::mt19937 random(9);
    for (const auto& [width, height] :
         std::vector<std::pair<int, int>>{{1, 1}, {3, 7}, {130, 127}, {16383, 1}, {1, 700}, {257, 300}}) {
        Bytes pixels = random_bytes(random, static_cast<std::size_t>(width * height * 4));
        for (std::size_t i = 4; i < pixels.size() / 2; ++i)
            pixels[i] = static_cast<unsigned char>(pixels[i - 4] + 1);
        Image image;
        ASSERT_TRUE(load(write(pixels, width, height), image));
        EXPECT_EQ(image.width, width);
        EXPECT_EQ(image.height, height);
        EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), image.pixels.begin(), image.pixels.end()));
    }
}

TEST_F(PngWriter, OnlyTheLastStoredBlockIsFinal) {
    // 16384 pixels and a filter byte make 65537 bytes a row: a full block and a rest, or with 16383 none.
    for (const auto& [width, sizes] :
         {std::pair{16383, std::vector<std::size_t>{65533}}, {16384, {65535, 2}}, {32767, {65535, 65534}}}) {
        const Bytes stream = stream_of(write(Bytes(static_cast<std::size_t>(width) * 4), width, 1));
        std::size_t position = 2;
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            EXPECT_EQ(stream[position], i + 1 == sizes.size() ? 1 : 0);
            EXPECT_EQ(stream[position + 1] | stream[position + 2] << 8, static_cast<int>(sizes[i]));
            position += 5 + sizes[i];
        }
        EXPECT_EQ(position + 4, stream.size());
    }
    // 13107 bytes a row, five rows: exactly one block, and it is final.
    EXPECT_EQ(stream_of(write(Bytes(65532), 16383, 1))[2], 1);
}

TEST_F(PngWriter, CutsIdatAt262144Bytes) {
    const Bytes file = write(Bytes(300 * 300 * 4), 300, 300);
    ParsedPng parsed;
    ASSERT_TRUE(parse_png(file, parsed));
    ASSERT_EQ(parsed.idat.size(), 2u);
    EXPECT_EQ(parsed.idat[0].size(), 262144u);
    EXPECT_EQ(parsed.idat_bytes, 300u * 1201 + 6 * 5 + 6);
}

TEST_F(PngWriter, ChoosesTheFilterOfTheSmallestSum) {
    // A ramp along each row suits Sub, and Average where the row above is twice as bright; equal rows suit
    // Up.
    Bytes pixels;
    for (int x = 0; x < 64; ++x) pixels.insert(pixels.end(), 4, static_cast<unsigned char>(2 * x));
    const Bytes ramp = pixels;
    std::mt19937 random(2);
    const Bytes noise = random_bytes(random, 256);
    pixels.insert(pixels.end(), noise.begin(), noise.end());
    pixels.insert(pixels.end(), noise.begin(), noise.end());
    Bytes clear(256, 0);
    pixels.insert(pixels.end(), clear.begin(), clear.end());
    const Bytes file = write(pixels, 64, 4);
    ParsedPng parsed;
    ASSERT_TRUE(parse_png(file, parsed));
    Inflater inflater;
    ASSERT_TRUE(inflater.start(parsed.idat, 4 * 257));
    EXPECT_EQ(inflater.output()[0], 1);
    EXPECT_EQ(inflater.output()[2 * 257], 2);
    EXPECT_EQ(inflater.output()[3 * 257], 0);
}

TEST(RowFilter, VectorFormsEqualThePlainOneAndUndo) {
    std::mt19937 random(4);
    for (std::size_t size = 4; size <= 100; size += 4) {
        for (unsigned filter = 0; filter < FilterCount; ++filter) {
            const Bytes row = random_bytes(random, size);
            const Bytes prior = random_bytes(random, size);
            Bytes expected(size);
            Bytes actual(size);
            Bytes undone(size);
            const auto sum = filter_row_plain(filter, row.data(), prior.data(), size, expected.data());
            EXPECT_EQ(filter_row(filter, row.data(), prior.data(), size, actual.data()), sum);
            EXPECT_EQ(actual, expected) << "filter " << filter << " size " << size;
            unfilter_row_to(filter, undone.data(), actual.data(), prior.data(), size, 4);
            EXPECT_EQ(undone, row) << "filter " << filter << " size " << size;
        }
    }
}

TEST_F(PngWriter, RefusesWhatItCannotWrite) {
    const Bytes pixel(4);
    EXPECT_FALSE(save_png_rgba8_file(nullptr, pixel.data(), 1, 1));
    EXPECT_FALSE(save_png_rgba8_file(path_.c_str(), nullptr, 1, 1));
    EXPECT_FALSE(save_png_rgba8_file(path_.c_str(), pixel.data(), 0, 1));
    EXPECT_FALSE(save_png_rgba8_file(path_.c_str(), pixel.data(), 1, -1));
    EXPECT_FALSE(save_png_rgba8_file(path_.c_str(), pixel.data(), 32768, 32768));
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_FALSE(save_png_rgba8_file("/no/such/folder/x.png", pixel.data(), 1, 1));
    EXPECT_TRUE(save_rgba8_file(path_.c_str(), pixel.data(), 1, 1));
}

TEST_F(PngWriter, ReportsAFullDisk) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP();
    EXPECT_FALSE(save_png_rgba8_file("/dev/full", Bytes(400 * 400 * 4).data(), 400, 400));
}

}  // namespace
}  // namespace vh::png
