#include "base/trigonometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>

#include "codec/crc32.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

// Angles of every size that a float has.
std::vector<double> anglesOfEverySize() {
    std::mt19937 bits(11);
    std::vector<double> angles{0.0, 0.5, -0.75, 1e-300, 1048576.0, 1048577.0, -1048577.0};
    for (int quarter = -200; quarter <= 200; ++quarter) angles.push_back(quarter * 1.5707963267948966);
    while (angles.size() < 50000) {
        float angle = 0;
        const auto word = static_cast<std::uint32_t>(bits());
        std::memcpy(&angle, &word, sizeof angle);
        if (std::isfinite(angle)) angles.push_back(angle);
    }
    return angles;
}

// The C library of Windows is the one that is far off.
TEST(Trigonometry, IsWithinABitOrTwoOfTheCLibrary) {
    if (platform_is_windows()) GTEST_SKIP() << "compared on Linux; the sum below covers both";
    for (const double angle : anglesOfEverySize()) {
        const double sine = std::sin(angle);
        const double cosine = std::cos(angle);
        ASSERT_NEAR(sineOf(angle), sine, std::fabs(sine) * 0x1p-51) << angle;
        ASSERT_NEAR(cosineOf(angle), cosine, std::fabs(cosine) * 0x1p-51) << angle;
    }
    for (const double angle : {1e300, -0x1.fffffffffffffp+1023, 0x1.6ac5b262ca1ffp+849})
        ASSERT_NEAR(sineOf(angle), std::sin(angle), std::fabs(std::sin(angle)) * 0x1p-51) << angle;
}

TEST(Trigonometry, HasTheSameBitsEverywhere) {
    std::vector<unsigned char> bytes;
    for (const double angle : anglesOfEverySize())
        for (const double value : {sineOf(angle), cosineOf(angle)}) {
            unsigned char parts[sizeof value];
            std::memcpy(parts, &value, sizeof value);
            bytes.insert(bytes.end(), parts, parts + sizeof value);
        }
    EXPECT_EQ(vh::png::crc32(bytes), 3194258149u);
    EXPECT_TRUE(std::isnan(sineOf(INFINITY)) && std::isnan(cosineOf(NAN)));
}

}  // namespace
}  // namespace kelmora
