#include "base/byte_reader.h"

#include <gtest/gtest.h>

#include <array>

namespace kelmora {
namespace {

TEST(ByteReader, ReadsBothByteOrders) {
    const std::array<unsigned char, 8> bytes{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08};
    ByteReader reader(bytes);
    std::uint16_t half = 0;
    std::uint32_t word = 0;
    ASSERT_TRUE(reader.readU16(half));
    EXPECT_EQ(half, 0x0201);
    ASSERT_TRUE(reader.readU32Big(word));
    EXPECT_EQ(word, 0x03040506u);
    ASSERT_TRUE(reader.readU16Big(half));
    EXPECT_EQ(half, 0x0708);
    EXPECT_TRUE(reader.atEnd());
}

TEST(ByteReader, AReadPastTheEndFailsAndStaysPut) {
    const std::array<unsigned char, 3> bytes{1, 2, 3};
    ByteReader reader(bytes);
    std::uint32_t word = 77;
    EXPECT_FALSE(reader.readU32(word));
    EXPECT_EQ(word, 77u);
    EXPECT_EQ(reader.position(), 0u);
    std::string_view text;
    EXPECT_FALSE(reader.readText(4, text));
    EXPECT_FALSE(reader.readText(static_cast<std::size_t>(-1), text));
    ASSERT_TRUE(reader.readText(3, text));
    EXPECT_EQ(text.size(), 3u);
    EXPECT_FALSE(reader.seek(4));
    EXPECT_FALSE(reader.skip(1));
}

}  // namespace
}  // namespace kelmora
