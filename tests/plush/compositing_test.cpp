#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <random>
#include <string>
#include <thread>

#include "image/image_registry.h"
#include "image/row_workers.h"
#include "plush/mix.h"
#include "plush/plain_compositing.h"
#include "plush/row_kernels.h"

namespace kelmora {
namespace {

using plain::Picture;

// Every set of inner loops that this processor runs, by name.
std::vector<std::pair<const char*, const RowKernels*>> allKernels() {
    std::vector<std::pair<const char*, const RowKernels*>> all{{"plain", &plainKernels}};
#if defined(KELMORA_X86)
    all.emplace_back("sse2", &sse2Kernels);
    if (hasAvx2()) all.emplace_back("avx2", &avx2Kernels);
#endif
    return all;
}

// Puts process-wide settings back.
struct SettingsGuard {
    std::int32_t threads = threadCount;
    ~SettingsGuard() {
        threadCount = threads;
        useRowKernels(nullptr);
    }
};

class Dice {
public:
    explicit Dice(unsigned seed) : engine_(seed) {}
    int between(int low, int high) { return low + static_cast<int>(engine_() % unsigned(high - low + 1)); }
    bool chance(int percent) { return between(1, 100) <= percent; }
    float decimal(float low, float high) {
        return low + (high - low) * static_cast<float>(between(0, 1 << 20)) / (1 << 20);
    }
    template <typename T>
    T oneOf(std::initializer_list<T> values) {
        return values.begin()[between(0, static_cast<int>(values.size()) - 1)];
    }

    // Random colours; alphas in runs of clear, opaque and anything, as pictures have them.
    Picture picture(int width, int height) {
        Picture picture{width, height, {}};
        int left = 0, kind = 0;
        for (int i = 0; i < width * height; ++i) {
            if (left-- == 0) {
                left = between(0, 40);
                kind = between(0, 2);
            }
            for (int c = 0; c < 3; ++c) picture.bytes.push_back(static_cast<unsigned char>(between(0, 255)));
            const int alpha = kind == 0 ? 0 : kind == 1 ? 255 : between(0, 255);
            picture.bytes.push_back(static_cast<unsigned char>(alpha));
        }
        return picture;
    }
    // Halves, which decide roundings, come about most with simple factors.
    float scale() {
        if (chance(20)) return oneOf({3.0f, 5.0f, 6.0f, 7.0f, 1.5f, 0.1f, 0.3f, 0.6f, 0.7f});
        return chance(30) ? oneOf({1.0f, 0.5f, 2.0f, 4.0f, -1.0f, 0.25f})
                          : decimal(chance(20) ? -3.0f : 0.01f, 3.0f);
    }
    float rotation() {
        return chance(40) ? oneOf({0.0f, 90.0f, 180.0f, 270.0f, 360.0f, -90.0f, 45.0f, 359.9995f, 0.001f})
                          : decimal(-800, 800);
    }

private:
    std::mt19937 engine_;
};

// Runs `fast` with each set of loops and one count of workers on a copy of the target.
template <typename Fast, typename Plain>
void expectSame(Dice& dice, const Picture& target, const std::string& what, Fast fast, Plain plainly) {
    Picture expected = target;
    PlushImage expectedImage = expected.image();
    plainly(expectedImage);
    for (const auto& [name, kernels] : allKernels()) {
        Picture drawn = target;
        PlushImage image = drawn.image();
        useRowKernels(kernels);
        threadCount = dice.between(1, 8);
        fast(image);
        ASSERT_TRUE(drawn.bytes == expected.bytes) << name << ", " << threadCount << " workers: " << what;
    }
}

TEST(Mix, FloorBy255IsExactForAll16BitValues) {
    for (std::uint32_t value = 0; value < 65536; ++value) ASSERT_EQ(floorBy255(value), value / 255);
}

// All pairs of source channel and alpha, over all target channels and several target alphas.
TEST(Mix, EveryChannelAndAlphaMixesAlike) {
    std::vector<unsigned char> source, target;
    for (int value = 0; value < 256 * 256; ++value) {
        const auto colour = static_cast<unsigned char>(value & 255);
        source.insert(source.end(), {colour, 77, static_cast<unsigned char>(255 - colour),
                                     static_cast<unsigned char>(value >> 8)});
    }
    for (int old = 0; old < 256; ++old) {
        const auto byte = static_cast<unsigned char>(old);
        target.clear();
        for (std::size_t i = 0; i < source.size(); i += 4)
            target.insert(target.end(), {byte, static_cast<unsigned char>(i >> 2), 1, byte});
        auto expected = target;
        for (std::size_t i = 0; i < source.size(); i += 4) plain::draw(&expected[i], &source[i], true);
        for (const auto& [name, kernels] : allKernels()) {
            auto mixed = target;
            kernels->mix(mixed.data(), source.data(), source.size() / 4);
            ASSERT_TRUE(mixed == expected) << name << " over " << old;
        }
    }
}

TEST(Compositing, BlitsEqualThePlainForm) {
    const SettingsGuard guard;
    Dice dice(1);
    for (int round = 0; round < 4000; ++round) {
        const Picture target = dice.picture(dice.between(1, 90), dice.between(1, 60));
        Picture source = dice.picture(dice.between(1, 80), dice.between(1, 50));
        const PlushImage sourceImage = source.image();
        const int x = dice.between(-90, 100), y = dice.between(-60, 70);
        const bool blend = dice.chance(60);
        const float scale = dice.scale(), rotation = dice.rotation();
        const auto blitOn = [&](PlushImage& image) {
            return Blit{image, sourceImage, x, y, blend, scale, rotation};
        };
        const std::string what = std::to_string(x) + ',' + std::to_string(y) + " scale " +
                                 std::to_string(scale) + " rotation " + std::to_string(rotation);
        expectSame(
            dice, target, what, [&](PlushImage& image) { blitImage(blitOn(image)); },
            [&](PlushImage& image) { plain::blitImage(blitOn(image)); });
        if (HasFatalFailure()) return;
    }
}

// Large enough to be shared out among workers.
TEST(Compositing, LargeBlitsEqualThePlainFormWithAnyWorkers) {
    const SettingsGuard guard;
    Dice dice(2);
    const Picture target = dice.picture(640, 360);
    Picture source = dice.picture(600, 310);
    const PlushImage sourceImage = source.image();
    const Blit cases[] = {{const_cast<PlushImage&>(sourceImage), sourceImage, 20, 30, true, 1, 0},
                          {const_cast<PlushImage&>(sourceImage), sourceImage, -50, -40, false, 1, 0},
                          {const_cast<PlushImage&>(sourceImage), sourceImage, 10, 5, true, 1.03f, 0},
                          {const_cast<PlushImage&>(sourceImage), sourceImage, 10, 20, true, 1.3f, 33},
                          {const_cast<PlushImage&>(sourceImage), sourceImage, -3, 7, false, 2, -100}};
    for (const Blit& one : cases) {
        const auto blitOn = [&](PlushImage& image) {
            return Blit{image, sourceImage, one.x, one.y, one.blend, one.scale, one.rotation};
        };
        for (int round = 0; round < 4; ++round)
            expectSame(
                dice, target, std::to_string(one.rotation),
                [&](PlushImage& image) { blitImage(blitOn(image)); },
                [&](PlushImage& image) { plain::blitImage(blitOn(image)); });
    }
}

TEST(Compositing, RectBlitsEqualThePlainForm) {
    const SettingsGuard guard;
    Dice dice(3);
    for (int round = 0; round < 1500; ++round) {
        const Picture target = dice.picture(dice.between(1, 90), dice.between(1, 60));
        Picture source = dice.picture(dice.between(1, 80), dice.between(1, 50));
        const PlushImage sourceImage = source.image();
        PlushImage none;
        RectBlit blit{none,
                      sourceImage,
                      dice.between(-30, 90),
                      dice.between(-30, 60),
                      dice.between(-1, 99),
                      dice.between(-1, 99),
                      dice.between(-90, 95),
                      dice.between(-60, 65),
                      dice.chance(60),
                      dice.scale()};
        const auto blitOn = [&](PlushImage& image) {
            return RectBlit{image,       sourceImage, blit.sourceX, blit.sourceY, blit.width,
                            blit.height, blit.x,      blit.y,       blit.blend,   blit.scale};
        };
        expectSame(
            dice, target, "scale " + std::to_string(blit.scale),
            [&](PlushImage& image) { blitImageRect(blitOn(image)); },
            [&](PlushImage& image) { plain::blitImageRect(blitOn(image)); });
        if (HasFatalFailure()) return;
    }
}

TEST(Compositing, SkewsEqualThePlainForm) {
    const SettingsGuard guard;
    Dice dice(4);
    for (int round = 0; round < 1200; ++round) {
        const Picture output = dice.picture(dice.between(1, 90), dice.between(1, 60));
        Picture input = dice.picture(dice.between(1, 80), dice.between(1, 50));
        PlushImage inputImage = input.image();
        std::int32_t c[8];
        const int reach = dice.oneOf({3, 50, 120, 1900, 40000, 1 << 30});
        for (std::int32_t& value : c) value = dice.between(-reach / 2, reach);
        // Corners far out almost on one line give triangles that rounding lets distant pixels into.
        if (dice.chance(20))
            for (int i = 0; i < 8; i += 2)
                c[i + 1] = dice.between(-1, 1) + (c[i] = dice.between(1000, 1000 + reach));
        expectSame(
            dice, output, "reach " + std::to_string(reach),
            [&](PlushImage& image) {
                skewImage(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], &inputImage, &image);
            },
            [&](PlushImage& image) { plain::skew(c, inputImage, image); });
        if (HasFatalFailure()) return;
    }
}

// Numbers no picture has, which scripts may still pass.
TEST(Compositing, ExtremeArgumentsStayInside) {
    const SettingsGuard guard;
    constexpr float huge = std::numeric_limits<float>::infinity();
    const float floats[] = {huge, -huge, std::nanf(""), 1e-45f, -1e-30f, 3e38f, 1e9f, 0.0f};
    constexpr std::int32_t integers[] = {INT32_MIN, INT32_MIN + 1, -1, 0, INT32_MAX - 1, INT32_MAX};
    Dice dice(5);
    Picture target = dice.picture(20, 10);
    Picture source = dice.picture(8, 8);
    PlushImage image = target.image();
    const PlushImage sourceImage = source.image();
    PlushImage other = sourceImage;
    for (const auto& [name, kernels] : allKernels()) {
        useRowKernels(kernels);
        for (const std::int32_t x : integers)
            for (const std::int32_t y : integers) skewImage(x, y, y, x, 0, 0, x, 3, &other, &image);
        for (const float scale : floats)
            for (const float rotation : floats)
                for (const std::int32_t x : integers)
                    for (const std::int32_t y : integers) {
                        blitImage({image, sourceImage, x, y, true, scale, rotation});
                        blitImage({image, sourceImage, -1, 2, false, scale, rotation});
                        blitImageRect({image, sourceImage, x, 0, y, y, y, x, true, scale});
                        blitImageRect({image, sourceImage, 1, 1, 3, x, x, 0, true, rotation});
                    }
    }
}

// Drawn onto itself an image smears in the order of rows and columns, whichever loops are in use.
TEST(Compositing, AnImageOntoItselfIsDrawnPixelByPixel) {
    const SettingsGuard guard;
    Dice dice(6);
    threadCount = 1;
    for (const float rotation : {0.0f, 30.0f}) {
        const Picture picture = dice.picture(70, 40);
        for (const int x : {-5, 1, 9}) {
            for (const float scale : {1.0f, 1.5f}) {
                expectSame(
                    dice, picture, std::to_string(rotation),
                    [&](PlushImage& image) {
                        blitImage({image, image, x, 2, true, scale, rotation});
                    },
                    [&](PlushImage& image) {
                        plain::blitImage({image, image, x, 2, true, scale, rotation});
                    });
            }
        }
    }
}

TEST(RowWorkers, EveryRowIsHandedOutOnce) {
    for (const std::int32_t rows : {0, 1, 2, 5, 7, 100, 544})
        for (const std::int32_t workers : {-1, 1, 2, 3, 6, 8, 600})
            for (const bool inAnyPieces : {false, true})
                for (const std::int64_t nanoseconds : {std::int64_t{0}, INT64_MAX}) {
                    std::vector<int> seen(static_cast<std::size_t>(rows));
                    const std::int32_t chunk = (rows + std::max(workers, 1) - 1) / std::max(workers, 1);
                    std::atomic<bool> areChunks = true;
                    shareRows({rows, workers, nanoseconds, inAnyPieces},
                              [&](std::int32_t first, std::int32_t last) {
                                  if (first % chunk != 0 || last != std::min(first + chunk, rows))
                                      areChunks = false;
                                  for (std::int32_t row = first; row < last; ++row)
                                      ++seen[static_cast<std::size_t>(row)];
                              });
                    EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), rows);
                    EXPECT_TRUE(areChunks || inAnyPieces);
                }
}

TEST(RowWorkers, FailureOfTheCallersWorkComesBack) {
    const auto caller = std::this_thread::get_id();
    for (int i = 0; i < 50; ++i) {
        std::atomic<bool> hasFailed = false;
        const auto work = [&](std::int32_t, std::int32_t) {
            if (std::this_thread::get_id() == caller) {
                hasFailed = true;
                throw 1;
            }
            while (!hasFailed) std::this_thread::yield();
        };
        EXPECT_THROW(shareRows({100, 100}, work), int);
    }
}

TEST(RowWorkers, OnlyLargeBlitsAreShared) {
    const SettingsGuard guard;
    threadCount = 6;
    EXPECT_EQ(blitWorkers(544, 179999), 1);
    EXPECT_EQ(blitWorkers(544, 180000), 6);
    EXPECT_EQ(blitWorkers(4, 180000), 4);
    threadCount = -3;
    EXPECT_LE(blitWorkers(544, 522240), 1);
}

}  // namespace
}  // namespace kelmora
