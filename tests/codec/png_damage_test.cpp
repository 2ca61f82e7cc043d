#include <gtest/gtest.h>

#include "codec/codec_test_support.h"

namespace vh::png {
namespace {

constexpr const char* samples[] = {
    "rgba8_filter4.png",     "rgb8_adam7_5x1.png",      "palette_trns.png",
    "grey16_key.png",        "apng_over_dispose1.png",  "deflate_many_blocks.png",
    "idat_with_empties.png", "apng_hidden_default.png", "zlib_fifteen_bits.png"};

// Makes the CRC of the chunk around `position` right again.
void fix_chunk_around(Bytes& file, std::size_t position) {
    for (std::size_t start = 8; start + 12 <= file.size();) {
        const std::size_t length = load_u32_big(file.data() + start);
        if (length > file.size() - start - 12) return;
        const std::size_t end = start + 8 + length;
        if (position >= start + 4 && position < end)
            store_u32_big(file.data() + end, crc32({file.data() + start + 4, length + 4}));
        start = end + 4;
    }
}

TEST(PngDamage, EveryTruncationFails) {
    for (const char* name : samples) {
        const Bytes whole = read_input(name);
        ASSERT_FALSE(whole.empty()) << name;
        for (std::size_t size = 0; size < whole.size(); ++size) {
            Image image;
            EXPECT_FALSE(load(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)), image))
                << name << " at " << size;
            EXPECT_TRUE(is_reset(image)) << name;
        }
    }
}

TEST(PngDamage, EveryFlippedBitFails) {
    for (const char* name : samples) {
        const Bytes whole = read_input(name);
        for (std::size_t i = 0; i < whole.size(); ++i) {
            Bytes file = whole;
            file[i] ^= static_cast<unsigned char>(1u << i % 8);
            Image image;
            EXPECT_FALSE(load(file, image)) << name << " at " << i;
            EXPECT_TRUE(is_reset(image)) << name;
        }
    }
}

TEST(PngDamage, DamageUnderARightCrcIsReadOrRefusedWhole) {
    std::mt19937 random(3);
    for (const char* name : samples) {
        const Bytes whole = read_input(name);
        for (std::size_t i = 8; i < whole.size(); ++i) {
            Bytes file = whole;
            file[i] ^= static_cast<unsigned char>(1 + random() % 255);
            fix_chunk_around(file, i);
            expect_whole_or_reset(file, name + (" at " + std::to_string(i)));
        }
    }
}

TEST(PngDamage, NoInputIsNoPicture) {
    Image image;
    image.width = 3;
    const unsigned char byte = 0;
    EXPECT_FALSE(load_memory(nullptr, 4, image));
    EXPECT_FALSE(load_memory(&byte, 0, image));
    EXPECT_FALSE(load_file(nullptr, image));
    EXPECT_FALSE(load_file(image_path("not_there.png").c_str(), image));
    EXPECT_TRUE(is_reset(image));
    EXPECT_TRUE(load_file(image_path("palette.png").c_str(), image));
    EXPECT_EQ(image.width, 21);
}

}  // namespace
}  // namespace vh::png
