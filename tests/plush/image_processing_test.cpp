#include "plush/image_processing.h"

#include <gtest/gtest.h>

#include "plush/scene_fixture.h"
#include "plush/text_picture.h"

namespace kelmora {
namespace {

using Pixel = std::vector<int>;

void fillRandom(PlushImage& image, unsigned seed) {
    std::mt19937 random(seed);
    for (int i = 0; i < image.width * image.height * 4; ++i)
        image.pixels[i] = static_cast<unsigned char>(random());
}

TEST(Dither, KeepsMeansAndLeavesMultiples) {
    for (const int step : {1, 7, 64, 100, 255, 1000})
        for (const int value : {0, 3, 100, 128, 230, 255}) {
            LivePicture picture(64, 64, static_cast<unsigned char>(value), 0, 255, 77);
            ditherImage(*picture, step, false, 3);
            int sum = 0;
            for (int i = 0; i < 64 * 64; ++i) {
                const Pixel pixel = picture.pixel(i % 64, i / 64);
                sum += pixel[0];
                EXPECT_TRUE(pixel[0] % step == 0 || pixel[0] == 255);
                EXPECT_EQ((Pixel{pixel[1], pixel[2], pixel[3]}), (Pixel{0, 255, 77}));
            }
            EXPECT_NEAR(sum / 4096.0, value, step / 64.0 + 0.01) << step << " " << value;
        }
}

TEST(Dither, OfNoAmountOnlyDoubles) {
    LivePicture picture(3, 2, 0, 0, 0), original(3, 2, 0, 0, 0);
    fillRandom(*picture, 1);
    fillRandom(*original, 1);
    ditherImage(*picture, 0, false, 1);
    EXPECT_EQ(picture.bytes(), original.bytes());
    ditherImage(*picture, 0, true, 4);
    ASSERT_EQ(picture->width * 100 + picture->height, 604);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x) EXPECT_EQ(picture.pixel(x, y), original.pixel(x / 2, y / 2));
}

TEST(Bilinear, SmoothsWithoutChangingFlatPicturesOrSums) {
    LivePicture flat(5, 4, 9, 200, 30, 128);
    bilinearInPlace(*flat, EdgeForm::Soft, 2);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(flat.pixel(i % 5, i / 5), (Pixel{9, 200, 30, 128}));
    LivePicture dot(5, 5, 0, 0, 0);
    setPixel(dot.get(), 2, 2, 160, 0, 0, 255);
    bilinearInPlace(*dot, EdgeForm::Soft, 1);
    int sum = 0;
    for (int i = 0; i < 25; ++i) sum += dot.pixel(i % 5, i / 5)[0];
    EXPECT_EQ(sum, 160);
    EXPECT_EQ(dot.pixel(2, 2)[0], 40);
    EXPECT_EQ(dot.pixel(3, 3)[0], 10);
}

TEST(Bilinear, ClearPixelsGiveNoColourAndSolidEdgesStay) {
    for (const EdgeForm edges : {EdgeForm::Soft, EdgeForm::Solid}) {
        LivePicture picture(4, 1, 255, 255, 255, 0);
        setPixel(picture.get(), 0, 0, 10, 20, 30, 255);
        setPixel(picture.get(), 1, 0, 10, 20, 30, 255);
        bilinearInPlace(*picture, edges, 1);
        const bool soft = edges == EdgeForm::Soft;
        EXPECT_EQ(picture.pixel(0, 0), (Pixel{10, 20, 30, 255}));
        EXPECT_EQ(picture.pixel(1, 0), (Pixel{10, 20, 30, soft ? 191 : 255}));
        EXPECT_EQ(picture.pixel(2, 0), (Pixel{10, 20, 30, soft ? 64 : 0}));
        EXPECT_EQ(picture.pixel(3, 0), (Pixel{255, 255, 255, 0}));
    }
}

TEST(Upscale, TruncatesSizesAndRefusesTheAbsurd) {
    LivePicture picture(3, 5, 1, 2, 3);
    for (const double factor : {1.0, 0.5, -2.0, std::nan(""), 1e9, HUGE_VAL})
        upscalePlushImage(*picture, factor, 1);
    EXPECT_EQ(picture->width, 3);
    EXPECT_FALSE(fitsEnlarged(*picture, HUGE_VAL));
    upscalePlushImage(*picture, 1.5, 2);
    EXPECT_EQ(picture->width * 100 + picture->height, 407);
}

TEST(Trim, KeepsTheUpperLeftPart) {
    LivePicture picture(4, 4, 0, 0, 0), original(4, 4, 0, 0, 0);
    fillRandom(*picture, 2);
    fillRandom(*original, 2);
    for (const auto& [width, height] : {std::pair{0, 2}, {2, -1}, {5, 2}, {2, 5}, {4, 4}})
        trimPlushImage(*picture, width, height);
    EXPECT_EQ(picture.bytes(), original.bytes());
    trimPlushImage(*picture, 3, 2);
    ASSERT_EQ(picture->width * 100 + picture->height, 302);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(picture.pixel(i % 3, i / 3), original.pixel(i % 3, i / 3));
}

TEST(ImageProcessing, AnyNumberOfWorkersGivesTheSameBytes) {
    std::vector<std::vector<unsigned char>> results;
    for (const int workers : {0, 1, 3, 100}) {
        LivePicture picture(17, 11, 0, 0, 0);
        fillRandom(*picture, 3);
        bilinearInPlace(*picture, EdgeForm::Soft, workers);
        ditherImage(*picture, 20, true, workers);
        upscalePlushImage(*picture, 1.3, workers);
        bilinearInPlace(*picture, EdgeForm::Solid, workers);
        results.push_back(picture.bytes());
    }
    for (const auto& result : results) EXPECT_EQ(result, results.front());
}

TEST(TextPicture, WritesCharactersOrColours) {
    LivePicture picture(2, 2, 255, 255, 255);
    setPixel(picture.get(), 0, 0, 0, 0, 0, 255);
    setPixel(picture.get(), 1, 1, 255, 255, 255, 128);
    EXPECT_EQ(textPicture(*picture, 2, 2, TextForm::Characters), " @\n@+\n");
    EXPECT_EQ(textPicture(*picture, 1, 1, TextForm::TrueColour),
              "\x1b[38;2;127;127;127m\x1b[48;2;191;191;191m\u2580\x1b[0m\n");
    EXPECT_EQ(textPicture(*picture, 0, 5, TextForm::Characters), "");
    EXPECT_EQ(textPicture(*picture, INT32_MAX, 1, TextForm::Characters).size(), 1001u);
}

}  // namespace
}  // namespace kelmora
