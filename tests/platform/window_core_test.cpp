#include "platform/window_core.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "image/pixel_memory.h"

namespace kelmora {
namespace {

std::uint32_t rgba(unsigned r, unsigned g, unsigned b, unsigned a) {
    return r | g << 8 | b << 16 | a << 24;
}

// A picture whose pixels a test sets by whole words.
class TestPicture {
public:
    TestPicture(int width, int height, std::uint32_t word = rgba(0, 0, 0, 255))
        : words_(static_cast<std::size_t>(width * height), word), width_(width), height_(height) {}
    std::uint32_t& at(int x, int y) { return words_[static_cast<std::size_t>(y * width_ + x)]; }
    PlushImage image() {
        return {width_, height_, reinterpret_cast<unsigned char*>(words_.data()), 0, 0, nullptr};
    }

private:
    std::vector<std::uint32_t> words_;
    int width_;
    int height_;
};

WindowCore coreOf(int width, int height) {
    WindowCore core("Test", width, height);
    core.setClientSize(width, height);
    core.handle(WindowEvent::focusGained());
    return core;
}

std::uint32_t plainBlend(ClearColour clear, std::uint32_t pixel) {
    const unsigned alpha = pixel >> 24;
    const auto channel = [alpha](unsigned back, unsigned front) {
        return (back * (255 - alpha) + front * alpha) / 255;
    };
    return rgba(channel(clear.red, pixel & 255), channel(clear.green, pixel >> 8 & 255),
                channel(clear.blue, pixel >> 16 & 255), 255);
}

// What the backbuffer must hold, pixel by pixel and without any short cut.
std::vector<std::uint32_t> plainComposition(const WindowCore& core, ClearColour clear, TestPicture& picture) {
    const PlushImage image = picture.image();
    const Letterbox box = letterboxOf(core.clientWidth(), core.clientHeight(), image.width, image.height);
    std::vector<std::uint32_t> result;
    for (int y = 0; y < core.clientHeight(); ++y)
        for (int x = 0; x < core.clientWidth(); ++x) {
            const int dx = x - box.x;
            const int dy = y - box.y;
            const bool inside = dx >= 0 && dy >= 0 && dx < box.width && dy < box.height;
            result.push_back(inside ? plainBlend(clear, picture.at(dx * image.width / box.width,
                                                                   dy * image.height / box.height))
                                    : clear.opaqueWord());
        }
    return result;
}

TEST(PixelRows, BlendingIsExactForEveryAlphaAndChannel) {
    for (unsigned clear : {0u, 1u, 127u, 128u, 254u, 255u})
        for (unsigned source = 0; source < 256; ++source)
            for (unsigned alpha = 0; alpha < 256; ++alpha)
                ASSERT_EQ(blendChannel(clear, source, alpha), (clear * (255 - alpha) + source * alpha) / 255)
                    << clear << " " << source << " " << alpha;
}

TEST(PixelRows, OneClearPixelAnywhereMakesARowNotOpaque) {
    std::vector<std::uint32_t> row(37, 0xff123456u);
    EXPECT_TRUE(rowIsOpaque(row));
    for (std::uint32_t& pixel : row) {
        pixel = 0xfe123456u;
        EXPECT_FALSE(rowIsOpaque(row));
        pixel = 0xff123456u;
    }
    EXPECT_TRUE(rowIsOpaque({}));
}

TEST(WindowCore, WithoutAPictureEverythingIsTheClearColour) {
    WindowCore core = coreOf(5, 3);
    core.setClearColour({10, 20, 30});
    ASSERT_TRUE(core.composeIfDirty());
    for (const std::uint32_t pixel : core.backbuffer()) EXPECT_EQ(pixel, rgba(10, 20, 30, 255));
    for (const std::uint32_t pixel : core.dibPixels()) EXPECT_EQ(pixel, 0x0a141eu);
    EXPECT_FALSE(core.composeIfDirty());
    core.setClearColour({10, 20, 30});
    EXPECT_TRUE(core.composeIfDirty());
}

TEST(WindowCore, ComposesLikeThePlainFormula) {
    struct Sizes {
        int clientWidth, clientHeight, imageWidth, imageHeight;
    };
    const ClearColour clear{200, 100, 7};
    for (const Sizes& s : {Sizes{40, 30, 16, 16}, Sizes{40, 30, 40, 30}, Sizes{50, 31, 100, 90},
                           Sizes{33, 60, 33, 7}, Sizes{1, 1, 9, 9}, Sizes{70, 3, 1, 1}}) {
        WindowCore core = coreOf(s.clientWidth, s.clientHeight);
        core.setClearColour(clear);
        TestPicture picture(s.imageWidth, s.imageHeight);
        std::uint32_t noise = 1;
        for (int y = 0; y < s.imageHeight; ++y)
            for (int x = 0; x < s.imageWidth; ++x) {
                noise = noise * 1664525u + 1013904223u;
                picture.at(x, y) = y % 3 == 0 ? noise | 0xff000000u : noise;
            }
        core.pushImage(picture.image());
        ASSERT_TRUE(core.composeIfDirty());
        const std::vector<std::uint32_t> expected = plainComposition(core, clear, picture);
        ASSERT_EQ(std::vector(core.backbuffer().begin(), core.backbuffer().end()), expected)
            << s.imageWidth << " x " << s.imageHeight;
        for (std::size_t i = 0; i < expected.size(); ++i)
            ASSERT_EQ(core.dibPixels()[i],
                      (expected[i] & 255) << 16 | (expected[i] & 0xff00) | (expected[i] >> 16 & 255));
    }
}

TEST(WindowCore, WholeStepsAreSquaresInABorder) {
    WindowCore core = coreOf(50, 31);
    core.setClearColour({1, 2, 3});
    core.setScaling(Scaling::whole);
    TestPicture picture(16, 9);
    picture.at(15, 8) = rgba(200, 0, 0, 255);
    core.pushImage(picture.image());
    core.composeIfDirty();
    const auto at = [&](int x, int y) { return core.backbuffer()[static_cast<std::size_t>(y * 50 + x)]; };
    EXPECT_EQ(at(0, 0), rgba(1, 2, 3, 255));  // 48 by 27 at 1, 2
    EXPECT_EQ(at(1, 2), rgba(0, 0, 0, 255));
    for (int y = 26; y < 29; ++y)
        for (int x = 46; x < 49; ++x) EXPECT_EQ(at(x, y), rgba(200, 0, 0, 255)) << x << " " << y;
    EXPECT_EQ(at(49, 28), rgba(1, 2, 3, 255));
    EXPECT_EQ(at(45, 28), rgba(0, 0, 0, 255));
    core.handle(WindowEvent::mouseMoved(48, 28));
    EXPECT_EQ(core.mouseX(), 15);
    EXPECT_EQ(core.mouseY(), 8);

    core.setClientSize(8, 8);  // no room: as large as can be
    EXPECT_TRUE(core.composeIfDirty());
    EXPECT_EQ(core.backbuffer()[8 * 3 + 3], rgba(0, 0, 0, 255));
}

TEST(WindowCore, SmoothPicturesFillTheLetterboxAndMixOverTheClearColour) {
    WindowCore core = coreOf(40, 10);
    core.setClearColour({0, 0, 100});
    core.setScaling(Scaling::smooth);
    TestPicture picture(2, 1, rgba(200, 0, 0, 0));
    picture.at(1, 0) = rgba(200, 0, 0, 255);
    core.pushImage(picture.image());
    core.composeIfDirty();
    const auto row = core.backbuffer().subspan(40 * 5, 40);
    EXPECT_EQ(row[9], rgba(0, 0, 100, 255));
    EXPECT_EQ(row[10], rgba(0, 0, 100, 255));
    EXPECT_EQ(row[29], rgba(200, 0, 0, 255));
    EXPECT_EQ(row[30], rgba(0, 0, 100, 255));
    for (std::size_t x = 16; x < 24; ++x) {
        EXPECT_GT(row[x] & 255, row[x - 1] & 255) << x;
        EXPECT_EQ(core.dibPixels()[40 * 5 + x], (row[x] & 255) << 16 | (row[x] >> 16 & 255));
    }

    TestPicture small(40, 10, rgba(1, 2, 3, 255));
    small.at(39, 9) = rgba(9, 9, 9, 255);
    core.pushImage(small.image());
    core.composeIfDirty();
    EXPECT_EQ(core.backbuffer()[399], rgba(9, 9, 9, 255));
    EXPECT_EQ(core.backbuffer()[398], rgba(1, 2, 3, 255));
}

TEST(WindowCore, APictureWithoutPixelsIsIgnored) {
    WindowCore core = coreOf(4, 4);
    core.pushImage(TestPicture(2, 2, rgba(9, 9, 9, 255)).image());
    core.composeIfDirty();
    core.pushImage({0, 5, nullptr, 0, 0, nullptr});
    core.pushImage({-3, 5, nullptr, 0, 0, nullptr});
    core.pushImage({3, 5, nullptr, 0, 0, nullptr});
    EXPECT_FALSE(core.composeIfDirty());
    EXPECT_EQ(core.backbuffer()[0], rgba(9, 9, 9, 255));
}

TEST(WindowCore, MouseReadsInPicturePixels) {
    WindowCore core = coreOf(1280, 720);
    core.handle(WindowEvent::mouseMoved(1279, 719));  // no picture yet: logical pixels
    EXPECT_EQ(core.mouseX(), 1279);
    EXPECT_EQ(core.mouseY(), 719);
    core.pushImage(TestPicture(640, 480).image());
    core.handle(WindowEvent::mouseMoved(1119, 719));
    EXPECT_EQ(core.mouseX(), 639);
    EXPECT_EQ(core.mouseY(), 479);
    core.handle(WindowEvent::buttonDown(MouseButton::middle, 100, -20));
    EXPECT_EQ(core.mouseX(), 0);
    EXPECT_EQ(core.mouseY(), 0);
    EXPECT_TRUE(core.buttonDown(MouseButton::middle));
    EXPECT_FALSE(core.buttonDown(MouseButton::left));
}

TEST(WindowCore, MouseStaysHeldUntilTheLastButtonIsUp) {
    WindowCore core = coreOf(10, 10);
    core.handle(WindowEvent::buttonDown(MouseButton::left, 1, 1));
    core.handle(WindowEvent::buttonDown(MouseButton::right, 1, 1));
    core.handle(WindowEvent::buttonUp(MouseButton::left, 50, 50));
    EXPECT_TRUE(core.anyButtonDown());
    core.handle(WindowEvent::buttonUp(MouseButton::right, 50, 50));
    EXPECT_FALSE(core.anyButtonDown());
    EXPECT_EQ(core.mouseX(), 9);
}

TEST(WindowCore, EveryKeyFillsItsOwnSlot) {
    const int codes[] = {13,  38,  40,  37,  39,  'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 'J',
                         'K', 'L', 'M', 'N', 'O', 'P', 'Q', 'R', 'S', 'T', 'U', 'V', 'W', 'X', 'Y',
                         'Z', '1', '2', '3', '4', '5', '6', '7', '8', '9', '0', 189, 8,   46,  32};
    ASSERT_EQ(std::size(codes), keySlotCount);
    for (std::size_t i = 0; i < keySlotCount; ++i) {
        WindowCore core = coreOf(1, 1);
        core.handle(WindowEvent::keyDown(codes[i]));
        KeyState expected;
        expected.down[i] = true;
        EXPECT_EQ(core.keyState().down, expected.down) << keyTable[i].name;
    }
    EXPECT_STREQ(keyTable[keySlotMinus].name, "MINUS");
}

TEST(WindowCore, MinusIsEitherOfTwoKeys) {
    WindowCore core = coreOf(1, 1);
    core.handle(WindowEvent::keyDown(109));
    EXPECT_TRUE(core.keyState().down[keySlotMinus]);
    core.handle(WindowEvent::keyDown(189));
    core.handle(WindowEvent::keyUp(109));
    EXPECT_TRUE(core.keyState().down[keySlotMinus]);
}

TEST(WindowCore, CodesOutsideTheTableAreHarmless) {
    WindowCore core = coreOf(1, 1);
    for (const int code : {-1, 0, 256, 100000}) core.handle(WindowEvent::keyDown(code));
    EXPECT_EQ(core.keyState().down, KeyState{}.down);
}

TEST(WindowCore, LosingTheFocusReleasesEverything) {
    WindowCore core = coreOf(10, 10);
    core.handle(WindowEvent::keyDown('W'));
    core.handle(WindowEvent::buttonDown(MouseButton::left, 3, 3));
    core.handle(WindowEvent::focusLost());
    EXPECT_EQ(core.keyState().down, KeyState{}.down);
    EXPECT_FALSE(core.anyButtonDown());
    core.handle(WindowEvent::keyDown('X'));
    EXPECT_EQ(core.keyState().down, KeyState{}.down);

    core.handle(WindowEvent::keyUp('X'));
    core.handle(WindowEvent::focusGained());
    EXPECT_EQ(core.keyState().down, KeyState{}.down);
    core.handle(WindowEvent::keyDown('W'));
    EXPECT_NE(core.keyState().down, KeyState{}.down);
}

std::vector<std::string> pressesOf(WindowCore& core) {
    std::vector<std::string> names;
    while (const char* name = core.takePress()) names.emplace_back(name);
    return names;
}

TEST(WindowCore, PressesAreKeptAfterTheyAreOver) {
    using Names = std::vector<std::string>;
    WindowCore core = coreOf(10, 10);
    for (const int code : {27, 27, 9, 81, 33, 123, 200}) {
        core.handle(WindowEvent::keyDown(code));
        core.handle(WindowEvent::keyDown(code));  // a system's repetition
        core.handle(WindowEvent::keyUp(code));
    }
    core.handle(WindowEvent::buttonDown(MouseButton::middle, 1, 1));
    core.handle(WindowEvent::buttonUp(MouseButton::middle, 1, 1));
    core.handle(WindowEvent::wheelTurned(-2));
    core.handle(WindowEvent::wheelTurned(1));
    core.handle(WindowEvent::keyDown(padCode(PadButton::start)));
    EXPECT_EQ(pressesOf(core), (Names{"escape", "escape", "tab", "q", "page_up", "f12", "pad_l",
                                      "mouse_middle", "wheel_down", "wheel_down", "wheel_up", "pad_start"}));
    EXPECT_EQ(pressesOf(core), Names{});
    EXPECT_EQ(core.takeWheel(), -1);
    EXPECT_EQ(core.takeWheel(), 0);

    core.handle(WindowEvent::focusLost());
    core.handle(WindowEvent::keyDown('A'));
    EXPECT_EQ(pressesOf(core), Names{});
}

TEST(WindowCore, PressesThatNobodyAsksForAreBounded) {
    WindowCore core = coreOf(10, 10);
    for (int i = 0; i < 1000; ++i) core.handle(WindowEvent::wheelTurned(2000000000));
    core.handle(WindowEvent::buttonDown(MouseButton::left, 1, 1));
    const std::vector<std::string> names = pressesOf(core);
    EXPECT_EQ(names.size(), 256u);
    EXPECT_EQ(names.back(), "mouse_left");
    EXPECT_LE(core.takeWheel(), 1000);
}

TEST(WindowCore, EveryKeyHasANameOfItsOwn) {
    std::set<std::string> names;
    std::size_t count = 0;
    const auto press = [&](const KeySlot& slot) {
        WindowCore core = coreOf(1, 1);
        core.handle(WindowEvent::keyDown(slot.code));
        for (const std::string& name : pressesOf(core)) names.insert(name);
        EXPECT_TRUE(core.keyDown(slot.code)) << slot.name;
        ++count;
    };
    for (const KeySlot& slot : keyTable) press(slot);
    for (const KeySlot& slot : moreKeyTable) press(slot);
    EXPECT_EQ(names.size(), count);
}

TEST(WindowCore, AltReturnAndF11AskForFullScreen) {
    WindowCore core = coreOf(10, 10);
    core.handle(WindowEvent::keyDown(keyF11));
    core.handle(WindowEvent::keyDown(keyF11));
    core.handle(WindowEvent::keyUp(keyF11));
    EXPECT_TRUE(core.takeFullscreenToggle());
    EXPECT_FALSE(core.takeFullscreenToggle());

    core.handle(WindowEvent::keyDown(keyAlt));
    core.handle(WindowEvent::keyDown(keyReturn));
    core.handle(WindowEvent::keyUp(keyAlt));
    core.handle(WindowEvent::keyDown(keyReturn));  // repeated while Return is still held
    EXPECT_FALSE(core.keyState().down[0]);
    EXPECT_TRUE(core.takeFullscreenToggle());
    EXPECT_EQ(pressesOf(core), (std::vector<std::string>{"f11", "alt"}));
    core.handle(WindowEvent::keyUp(keyReturn));
    core.handle(WindowEvent::keyDown(keyReturn));
    EXPECT_TRUE(core.keyState().down[0]);
    EXPECT_FALSE(core.takeFullscreenToggle());
}

TEST(WindowCore, OnlyANewSizeBlanksTheBackbuffer) {
    WindowCore core = coreOf(8, 6);
    core.setClearColour({1, 2, 3});
    core.composeIfDirty();
    core.handle(WindowEvent::resized(8, 6));
    EXPECT_EQ(core.backbuffer()[0], rgba(1, 2, 3, 255));
    EXPECT_TRUE(core.composeIfDirty());
    core.handle(WindowEvent::resized(0, -4));
    EXPECT_EQ(core.clientWidth(), 1);
    EXPECT_EQ(core.clientHeight(), 1);
    EXPECT_EQ(core.backbuffer()[0], 0u);
    EXPECT_EQ(core.logicalWidth(), 8);
    EXPECT_TRUE(core.composeIfDirty());
}

// Only rows that changed are drawn again: it must not show.
TEST(WindowCore, ARedrawnWindowIsThatOfANewOne) {
    std::mt19937 random(3);
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    WindowCore core = coreOf(30, 20);
    TestPicture picture(12, 9);
    ClearColour clear{1, 2, 3};
    core.setClearColour(clear);
    Scaling scaling = Scaling::nearest;
    int width = 30;
    int height = 20;
    for (int round = 0; round < 400; ++round) {
        for (int changes = below(4); changes > 0; --changes)
            picture.at(below(12), below(9)) = rgba(random() % 256, 7, 9, below(3) == 0 ? 90 : 255);
        core.pushImage(picture.image());
        if (below(12) == 0) core.setClearColour(clear = {static_cast<std::uint8_t>(below(256)), 5, 6});
        if (below(12) == 0)
            core.setScaling(scaling =
                                std::array{Scaling::nearest, Scaling::smooth, Scaling::whole}[random() % 3]);
        if (below(12) == 0) core.handle(WindowEvent::resized(width = 5 + below(40), height = 5 + below(40)));
        TestPicture shade(3, 2, rgba(9, 9, 9, 128));
        const PlushImage overlay = shade.image();
        const bool isCovered = below(12) == 0;
        if (isCovered) core.setOverlay(&overlay, 1);
        core.composeIfDirty();

        WindowCore fresh = coreOf(width, height);
        fresh.setClearColour(clear);
        fresh.setScaling(scaling);
        fresh.pushImage(picture.image());
        if (isCovered) fresh.setOverlay(&overlay, 1);
        fresh.composeIfDirty();
        ASSERT_TRUE(std::ranges::equal(core.dibPixels(), fresh.dibPixels())) << round;
        if (isCovered) core.setOverlay(nullptr, 0);
    }
}

TEST(WindowCore, CaptureIsACopyOfTheBackbuffer) {
    WindowCore core = coreOf(3, 2);
    core.setClearColour({1, 2, 3});
    core.composeIfDirty();
    const std::unique_ptr<PlushImage> image(core.capture());
    const PixelMemory pixels(image->pixels);
    EXPECT_EQ(image->width, 3);
    EXPECT_EQ(image->height, 2);
    EXPECT_EQ(image->reflectPixels, nullptr);
    const unsigned char expected[] = {1, 2, 3, 255};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(std::memcmp(pixels.get() + i * 4, expected, 4), 0);
}

}  // namespace
}  // namespace kelmora
