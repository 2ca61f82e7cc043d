#include "codec/png_unfilter.h"

#include <gtest/gtest.h>

#include "codec/codec_test_support.h"

namespace vh::png {
namespace {

TEST(Unfilter, VectorFormsEqualThePlainOneAtEveryLength) {
    std::mt19937 random(11);
    for (const std::size_t pixel : {1u, 2u, 3u, 4u, 6u, 8u}) {
        for (std::size_t size = 0; size <= 70; ++size) {
            for (unsigned filter = 0; filter < 5; ++filter) {
                const Bytes raw = random_bytes(random, size);
                const Bytes prior = random_bytes(random, size);
                for (const unsigned char* above :
                     {prior.data(), static_cast<const unsigned char*>(nullptr)}) {
                    Bytes expected(size);
                    Bytes actual(size);
                    EXPECT_TRUE(
                        unfilter_row_to_plain(filter, expected.data(), raw.data(), above, size, pixel));
                    EXPECT_TRUE(unfilter_row_to(filter, actual.data(), raw.data(), above, size, pixel));
                    ASSERT_EQ(actual, expected)
                        << "filter " << filter << " pixel " << pixel << " size " << size;
                }
            }
        }
    }
}

TEST(Unfilter, APaethPairEqualsTwoRows) {
    std::mt19937 random(12);
    for (const std::size_t pixel : {1u, 3u, 4u, 8u}) {
        for (std::size_t size = 0; size <= 70; size += pixel) {
            const Bytes prior = random_bytes(random, size);
            const Bytes raw[2] = {random_bytes(random, size), random_bytes(random, size)};
            Bytes expected[2] = {Bytes(size), Bytes(size)};
            Bytes actual[2] = {Bytes(size), Bytes(size)};
            const unsigned char* above = prior.data();
            for (std::size_t i = 0; i < 2; ++i) {
                unfilter_row_to_plain(4, expected[i].data(), raw[i].data(), above, size, pixel);
                above = expected[i].data();
            }
            unsigned char* const out[2] = {actual[0].data(), actual[1].data()};
            const unsigned char* const in[2] = {raw[0].data(), raw[1].data()};
            unfilter_paeth_pair(out, in, prior.data(), size, pixel);
            ASSERT_EQ(actual[0], expected[0]) << "pixel " << pixel << " size " << size;
            ASSERT_EQ(actual[1], expected[1]) << "pixel " << pixel << " size " << size;
        }
    }
}

TEST(Unfilter, PaethBreaksTiesLeftThenUpperThenUpperLeft) {
    // With left 10 and upper 10 over upper-left 10 all are equally near; 12, 8 over 10 ties left with upper.
    const unsigned char prior[] = {10, 8, 20, 30};
    const unsigned char raw[] = {2, 0, 0, 0};
    unsigned char out[4];
    ASSERT_TRUE(unfilter_row_to(4, out, raw, prior, 4, 1));
    const unsigned char expected[] = {12, 10, 20, 30};
    EXPECT_TRUE(std::equal(out, out + 4, expected));
}

TEST(Unfilter, RefusesFiltersAboveFour) {
    unsigned char byte = 0;
    for (const unsigned filter : {5u, 6u, 255u})
        EXPECT_FALSE(unfilter_row_to(filter, &byte, &byte, nullptr, 1, 1));
}

}  // namespace
}  // namespace vh::png
