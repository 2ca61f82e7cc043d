#include <gtest/gtest.h>

#include "codec/adler32.h"
#include "codec/codec_test_support.h"
#include "codec/crc32.h"

namespace vh::png {
namespace {

std::span<const unsigned char> bytes_of(std::string_view text) {
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

TEST(Checksums, HaveTheirPublishedValues) {
    EXPECT_EQ(crc32(bytes_of("123456789")), 0xCBF43926u);
    EXPECT_EQ(crc32({}), 0u);
    EXPECT_EQ(adler32(bytes_of("Wikipedia")), 0x11E60398u);
    EXPECT_EQ(adler32({}), 1u);
}

std::uint32_t adler_by_definition(std::span<const unsigned char> bytes) {
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const unsigned char byte : bytes) {
        a = (a + byte) % 65521;
        b = (b + a) % 65521;
    }
    return b << 16 | a;
}

std::uint32_t crc_by_definition(std::span<const unsigned char> bytes) {
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const unsigned char byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320u : 0);
    }
    return ~crc;
}

TEST(Checksums, EveryFormAgreesAtEveryLength) {
    std::mt19937 random(1);
    const Bytes data = random_bytes(random, 400);
    for (std::size_t size = 0; size + 3 <= data.size(); ++size) {
        const std::span<const unsigned char> bytes(data.data() + size % 3, size);
        EXPECT_EQ(crc32(bytes), crc_by_definition(bytes)) << size;
        EXPECT_EQ(crc32_portable(bytes), crc_by_definition(bytes)) << size;
        EXPECT_EQ(adler32(bytes), adler_by_definition(bytes)) << size;
        EXPECT_EQ(adler32_portable(bytes), adler_by_definition(bytes)) << size;
        EXPECT_EQ(crc32(bytes.subspan(size / 3), crc32(bytes.first(size / 3))), crc32(bytes)) << size;
        EXPECT_EQ(adler32(bytes.subspan(size / 3), adler32(bytes.first(size / 3))), adler32(bytes)) << size;
    }
}

TEST(Checksums, AdlerHoldsOverLongRunsOfTheLargestByte) {
    const Bytes data(100000, 0xFF);
    EXPECT_EQ(adler32(data), adler_by_definition(data));
    EXPECT_EQ(adler32_portable(data), adler_by_definition(data));
    EXPECT_EQ(crc32(data), crc_by_definition(data));
}

}  // namespace
}  // namespace vh::png
