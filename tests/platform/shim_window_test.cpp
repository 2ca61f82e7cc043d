#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "base/whole_file.h"
#include "image/pixel_memory.h"
#include "platform/memory_window.h"
#include "shim/shim.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

struct WindowEnd {
    void operator()(WindowsWindow* window) const { vh_destroyWindow(window); }
};
using WindowHolder = std::unique_ptr<WindowsWindow, WindowEnd>;

class ShimWindow : public testing::Test {
protected:
    WindowHolder create(int width, int height) const {
        return WindowHolder(vh_createWindow("Test", width, height));
    }
    static std::string titleOf(WindowsWindow* window) {
        char* title = vh_getWindowTitle(window);
        std::string text = title;
        std::free(title);
        return text;
    }

    ScopedEnvironment video_{"KELMORA_VIDEO", "memory"};
    ScopedEnvironment input_{"KELMORA_INPUT", nullptr};
    ScopedEnvironment shots_{"KELMORA_SHOTS", nullptr};
};

bool isDown(const char* name) {
    const KeyState* state = vh_updateKeyboardState();
    for (std::size_t i = 0; i < keySlotCount; ++i)
        if (std::string(name) == keyTable[i].name) return state->down[i];
    ADD_FAILURE() << name;
    return false;
}

TEST_F(ShimWindow, EveryFunctionAcceptsNoWindow) {
    PlushImage image;
    vh_closeWindow(nullptr);
    vh_destroyWindow(nullptr);
    vh_setWindowSize(nullptr, 3, 3);
    vh_setWindowTitle(nullptr, "x");
    vh_pushImage(nullptr, &image);
    vh_updateWindow(nullptr);
    vh_clearWindow(nullptr, 1, 2, 3);
    EXPECT_EQ(vh_getWindowTitle(nullptr), nullptr);
    EXPECT_TRUE(vh_windowShouldClose(nullptr));
    EXPECT_EQ(vh_captureWindow(nullptr), nullptr);
    EXPECT_FALSE(vh_getMouseButtonState(nullptr, 0));
    int x = 5;
    int y = 5;
    vh_getWindowSize(nullptr, &x, &y);
    EXPECT_EQ(x + y, 0);
    vh_getMousePosition(nullptr, &x, &y);
    EXPECT_EQ(x, -1);
    EXPECT_EQ(y, -1);
    vh_setTouchBarButtonText(nullptr, 99, nullptr);
    vh_setTouchBarButtonImage(nullptr, -1, nullptr);
    vh_clearTouchBar(nullptr);
    EXPECT_FALSE(vh_getTouchBarButtonState(nullptr, 1));
    vh_sailfish_register_key(-1);
    EXPECT_EQ(vh_sailfish_left_orientation(), 0);
}

TEST_F(ShimWindow, TitleAndSizeAreWhatTheGameAsked) {
    const WindowHolder window(vh_createWindow(nullptr, 0, -7));
    EXPECT_EQ(titleOf(window.get()), "VesperMoon");
    vh_setWindowTitle(window.get(), "A game");
    EXPECT_EQ(titleOf(window.get()), "A game");
    EXPECT_EQ(memoryWindowOf(window.get())->shownTitle(), "A game");
    vh_setWindowTitle(window.get(), nullptr);
    EXPECT_EQ(memoryWindowOf(window.get())->shownTitle(), "VesperMoon");

    int width = 0;
    int height = 0;
    vh_getWindowSize(window.get(), &width, &height);
    EXPECT_EQ(width, 1);
    EXPECT_EQ(height, 1);
    vh_setWindowSize(window.get(), 2147483647, 2147483647);
    vh_getWindowSize(window.get(), &width, &height);
    EXPECT_EQ(height, 2147483647);
    memoryWindowOf(window.get())->post(WindowEvent::resized(20, 10));
    vh_setWindowSize(window.get(), 30, 40);
    vh_updateWindow(window.get());
    vh_getWindowSize(window.get(), &width, &height);
    EXPECT_EQ(width, 30);  // the user's size is the client's, not the game's
    EXPECT_EQ(height, 40);
    const std::unique_ptr<PlushImage> shown(vh_captureWindow(window.get()));
    const PixelMemory pixels(shown->pixels);
    EXPECT_EQ(shown->width, 20);
    EXPECT_EQ(shown->height, 10);
}

TEST_F(ShimWindow, PresentsOnlyWhatChanged) {
    const WindowHolder window = create(4, 4);
    MemoryWindow* display = memoryWindowOf(window.get());
    vh_updateWindow(window.get());
    vh_updateWindow(window.get());
    EXPECT_EQ(display->presentCount(), 1);
    unsigned char pixel[] = {9, 8, 7, 255};
    const PlushImage image{1, 1, pixel, 0, 0, nullptr};
    vh_pushImage(window.get(), &image);
    EXPECT_EQ(display->presentCount(), 1);
    pixel[0] = 0;  // the window keeps its own copy
    vh_updateWindow(window.get());
    EXPECT_EQ(display->presentCount(), 2);
    const std::unique_ptr<PlushImage> shown(vh_captureWindow(window.get()));
    const PixelMemory pixels(shown->pixels);
    EXPECT_EQ(pixels[0], 9);
}

TEST_F(ShimWindow, ClosingAsksAndHidesButDestroysNothing) {
    const WindowHolder window = create(4, 4);
    EXPECT_FALSE(vh_windowShouldClose(window.get()));
    memoryWindowOf(window.get())->post(WindowEvent::closeRequested());
    vh_updateWindow(window.get());
    EXPECT_TRUE(vh_windowShouldClose(window.get()));
    EXPECT_FALSE(memoryWindowOf(window.get())->hidden());

    const WindowHolder other = create(4, 4);
    vh_closeWindow(other.get());
    EXPECT_TRUE(vh_windowShouldClose(other.get()));
    EXPECT_TRUE(memoryWindowOf(other.get())->hidden());
    vh_updateWindow(other.get());
    EXPECT_EQ(titleOf(other.get()), "Test");
}

TEST_F(ShimWindow, KeysComeFromTheWindowUpdatedLast) {
    EXPECT_FALSE(isDown("A"));
    WindowHolder first = create(4, 4);
    const WindowHolder second = create(4, 4);
    memoryWindowOf(first.get())->post(WindowEvent::keyDown('A'));
    vh_updateWindow(first.get());
    EXPECT_TRUE(isDown("A"));
    vh_updateWindow(second.get());
    EXPECT_FALSE(isDown("A"));
    vh_updateWindow(first.get());
    EXPECT_TRUE(isDown("A"));
    first.reset();
    EXPECT_FALSE(isDown("A"));
}

TEST_F(ShimWindow, EachMouseButtonHasItsNumber) {
    constexpr MouseButton numbered[] = {MouseButton::left, MouseButton::right, MouseButton::middle};
    for (int pressed = 0; pressed < 3; ++pressed) {
        const WindowHolder window = create(4, 4);
        memoryWindowOf(window.get())->post(WindowEvent::buttonDown(numbered[pressed], 1, 2));
        vh_updateWindow(window.get());
        for (int button = 0; button < 3; ++button)
            EXPECT_EQ(vh_getMouseButtonState(window.get(), button), button == pressed) << pressed << button;
    }
}

TEST_F(ShimWindow, UnknownMouseButtonsAreUp) {
    const WindowHolder window = create(4, 4);
    for (const MouseButton button : {MouseButton::left, MouseButton::right, MouseButton::middle})
        memoryWindowOf(window.get())->post(WindowEvent::buttonDown(button, 1, 2));
    vh_updateWindow(window.get());
    for (int button = -1; button < 5; ++button)
        EXPECT_EQ(vh_getMouseButtonState(window.get(), button), button >= 0 && button <= 2) << button;
    EXPECT_FALSE(vh_getTouchBarButtonState(window.get(), 1));
}

TEST_F(ShimWindow, ThePlayerAndTheGameTurnFullScreenOnAndOff) {
    const WindowHolder window = create(16, 9);
    MemoryWindow* display = memoryWindowOf(window.get());
    const auto shownWidth = [&] {
        vh_updateWindow(window.get());
        const std::unique_ptr<PlushImage> shown(vh_captureWindow(window.get()));
        const PixelMemory pixels(shown->pixels);
        return shown->width;
    };
    EXPECT_FALSE(vh_isFullscreen(window.get()));
    display->post(WindowEvent::keyDown(keyAlt));
    display->post(WindowEvent::keyDown(keyReturn));
    EXPECT_EQ(shownWidth(), 1920);
    EXPECT_TRUE(vh_isFullscreen(window.get()));
    EXPECT_FALSE(isDown("RETURN"));
    vh_setFullscreen(window.get(), true);
    display->post(WindowEvent::mouseMoved(1919, 1079));
    EXPECT_EQ(shownWidth(), 1920);
    int x = 0;
    int y = 0;
    vh_getMousePosition(window.get(), &x, &y);
    EXPECT_EQ(x, 15);
    EXPECT_EQ(y, 8);
    display->post(WindowEvent::keyDown(keyF11));
    EXPECT_EQ(shownWidth(), 16);
    EXPECT_FALSE(vh_isFullscreen(window.get()));
    vh_setFullscreen(window.get(), true);
    EXPECT_EQ(shownWidth(), 1920);
    vh_setFullscreen(nullptr, true);
    vh_setScaling(nullptr, Scaling::smooth);
    EXPECT_FALSE(vh_isFullscreen(nullptr));
}

TEST_F(ShimWindow, ARecordingIsPlayedByTheUpdate) {
    platform_set_picture_writer(vh_save_png);
    const TemporaryFolder folder;
    const std::string recording = (folder / "input.txt").string();
    const std::string shot = (folder / "out.png").string();
    ASSERT_TRUE(writeWholeFile(recording,
                               "# walk, click, look\r\n"
                               "2 keydown RIGHT\n"
                               "4 keyup RIGHT\n"
                               "\n"
                               "4 mouse 1 2\n"
                               "5 button right down\n"
                               "5 resize 6 4\n"
                               "6 shot out.png\n"
                               "7 close"));
    const ScopedEnvironment input("KELMORA_INPUT", recording.c_str());
    const ScopedEnvironment shots("KELMORA_SHOTS", folder.path().string().c_str());
    const WindowHolder window = create(4, 4);
    vh_clearWindow(window.get(), 5, 6, 7);
    for (int update = 1; update <= 8; ++update) {
        vh_updateWindow(window.get());
        EXPECT_EQ(isDown("RIGHT"), update >= 2 && update < 4) << update;
        EXPECT_EQ(vh_getMouseButtonState(window.get(), 1), update >= 5) << update;
        EXPECT_EQ(std::filesystem::exists(shot), update >= 6) << update;
        EXPECT_EQ(vh_windowShouldClose(window.get()), update >= 7) << update;
    }
    int x = 0;
    int y = 0;
    vh_getMousePosition(window.get(), &x, &y);
    EXPECT_EQ(x, 1);
    EXPECT_EQ(y, 2);

    int width = 0;
    int height = 0;
    const PixelMemory pixels(vh_load_png(shot.c_str(), &width, &height));
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ(width, 6);
    EXPECT_EQ(height, 4);
    EXPECT_EQ(pixels[0] | pixels[1] << 8 | pixels[2] << 16, 0x070605);
}

TEST_F(ShimWindow, APictureThatCannotBeWrittenIsAnError) {
    const WindowHolder window = create(4, 4);
    memoryWindowOf(window.get())->play(parseRecordedInput("1 shot no/such/folder/a.png", "test"), "");
    EXPECT_THROW(vh_updateWindow(window.get()), std::runtime_error);
    vh_updateWindow(window.get());
}

TEST_F(ShimWindow, AMissingRecordingOrDisplayNameIsAnError) {
    {
        const ScopedEnvironment input("KELMORA_INPUT", "/no/such/recording");
        EXPECT_THROW(vh_createWindow("x", 1, 1), std::runtime_error);
    }
    const ScopedEnvironment video("KELMORA_VIDEO", "memroy");
    EXPECT_THROW(vh_createWindow("x", 1, 1), std::runtime_error);
}

TEST_F(ShimWindow, NoDisplayMeansNoWindow) {
    if (platform_is_windows()) GTEST_SKIP() << "Windows always has a display";
    const ScopedEnvironment video("KELMORA_VIDEO", nullptr);
    const ScopedEnvironment x11("DISPLAY", nullptr);
    const ScopedEnvironment wayland("WAYLAND_DISPLAY", nullptr);
    const ScopedEnvironment driver("SDL_VIDEODRIVER", nullptr);
    EXPECT_EQ(vh_createWindow("x", 1, 1), nullptr);
}

TEST(ShimImages, AFileThatDoesNotLoadClearsTheSizes) {
    int width = 7;
    int height = 7;
    EXPECT_EQ(vh_load_png("/no/such/picture.png", &width, &height), nullptr);
    EXPECT_EQ(width + height, 0);
    EXPECT_EQ(vh_load_png(nullptr, &width, &height), nullptr);
}

}  // namespace
}  // namespace kelmora
