#include "platform/letterbox.h"

#include <gtest/gtest.h>

namespace kelmora {
namespace {

struct LetterboxCase {
    int clientWidth, clientHeight, imageWidth, imageHeight;
    int x, y, width, height;
};

TEST(Letterbox, IsTheLargestCentredRectangleOfThePicturesShape) {
    const LetterboxCase cases[] = {
        {1280, 720, 640, 480, 160, 0, 960, 720},
        {640, 480, 640, 480, 0, 0, 640, 480},
        {300, 300, 3, 2, 0, 50, 300, 200},
        {100, 101, 100, 50, 0, 25, 100, 50},  // an odd margin leaves the spare row below
        {10, 10, 4, 3, 0, 1, 10, 8},          // 7.5 rounds away from zero
        {1, 1, 1920, 1080, 0, 0, 1, 1},       // 0.56 rounds to 1
        {2, 2, 5000, 3, 0, 0, 2, 1},          // never thinner than a pixel
        {1, 1000, 1000000, 1, 0, 499, 1, 1},  // the scale stops at 0.0001, the width at the client's
        {1, 1, 2147483647, 2147483647, 0, 0, 1, 1},
        {4096, 4096, 1, 1, 0, 0, 4096, 4096},
    };
    for (const LetterboxCase& c : cases) {
        const Letterbox box = letterboxOf(c.clientWidth, c.clientHeight, c.imageWidth, c.imageHeight);
        SCOPED_TRACE(testing::Message() << c.imageWidth << " x " << c.imageHeight << " in " << c.clientWidth
                                        << " x " << c.clientHeight);
        EXPECT_EQ(box.x, c.x);
        EXPECT_EQ(box.y, c.y);
        EXPECT_EQ(box.width, c.width);
        EXPECT_EQ(box.height, c.height);
    }
}

TEST(Letterbox, SourcePositionsStayInsideThePicture) {
    EXPECT_EQ(sourcePosition(0, 640, 960), 0);
    EXPECT_EQ(sourcePosition(1, 640, 960), 0);
    EXPECT_EQ(sourcePosition(2, 640, 960), 1);
    EXPECT_EQ(sourcePosition(959, 640, 960), 639);
    EXPECT_EQ(sourcePosition(0, 1000000, 1), 0);
    EXPECT_EQ(sourcePosition(99999, 2000000, 100000), 1999980);  // past 32 bits on the way
}

TEST(Letterbox, MouseReachesBothEndsOfThePictureAndRoundsBetween) {
    EXPECT_EQ(imagePosition(160, 160, 960, 640), 0);
    EXPECT_EQ(imagePosition(160 + 959, 160, 960, 640), 639);
    EXPECT_EQ(imagePosition(0, 160, 960, 640), 0);
    EXPECT_EQ(imagePosition(1279, 160, 960, 640), 639);
    EXPECT_EQ(imagePosition(-2000000000, 2000, 960, 640), 0);

    // A picture of 3 columns over 9 drawn ones: 0 to 8 map to 0, 0.25, 0.5 and so on.
    const int expected[] = {0, 0, 1, 1, 1, 1, 2, 2, 2};
    for (int x = 0; x < 9; ++x) EXPECT_EQ(imagePosition(x, 0, 9, 3), expected[x]) << x;

    EXPECT_EQ(imagePosition(5, 0, 1, 640), 0);
    EXPECT_EQ(imagePosition(5, 0, 640, 1), 0);
}

}  // namespace
}  // namespace kelmora
