#include "platform/window_place.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/whole_file.h"
#include "platform/windows_window.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

const WindowPlace examplePlace{{960, 544}, {-20, 35, 1440, 816}, true};

TEST(WindowPlace, TextGoesOutAndComesBack) {
    const auto back = readPlace(placeText(examplePlace));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->asked, examplePlace.asked);
    EXPECT_EQ(back->area, examplePlace.area);
    EXPECT_TRUE(back->fullscreen);
}

TEST(WindowPlace, BadTextIsNothing) {
    for (const char* text :
         {"", "asked", "asked 960 544\nsize 0 816\nat 0 0\nfullscreen no\n",
          "asked 960 544\nsize 99999 816\nat 0 0\nfullscreen no\n",
          "asked 960 544\nsize 1440 816\nat 0 99999999999999\nfullscreen no\n",
          "asked 960 544\nsize 1440 816\nat 0 0\nfullscreen maybe\n",
          "asked 960 544\nsize 1440 8x6\nat 0 0\nfullscreen no\n",
          "asked 960 544\nsize 1440 816\nat 0 0\nfullscreen no\nmore\n", "\x89PNG\r\n\x1a\n"})
        EXPECT_FALSE(readPlace(text)) << text;
}

TEST(WindowPlace, AWindowCanAlwaysBeTakenHoldOf) {
    const PixelArea left{0, 0, 1920, 1080};
    const PixelArea right{1920, 0, 1280, 1024};
    const std::vector<PixelArea> screens{left, right};
    for (const PixelArea& good : {PixelArea{10, 10, 960, 544}, PixelArea{2000, 100, 960, 544},
                                  PixelArea{-800, 10, 960, 544}, PixelArea{100, 1000, 960, 544}})
        EXPECT_EQ(fittedTo(screens, good), good) << good.x << " " << good.y;
    // The second screen is gone, or the title would be above the first.
    for (const PixelArea& lost : {PixelArea{2000, 100, 960, 544}, PixelArea{10, -40, 960, 544},
                                  PixelArea{-950, 10, 960, 544}, PixelArea{10, 1050, 960, 544}})
        EXPECT_EQ(fittedTo({{left}}, lost), (PixelArea{480, 268, 960, 544})) << lost.x << " " << lost.y;
    EXPECT_EQ(fittedTo({{right}}, {0, -1, 4000, 3000}), (PixelArea{1920, 0, 1280, 1024}));
}

// A display with a desktop that a test can look at.
class DeskBackend : public WindowBackend {
public:
    explicit DeskBackend(WindowCore& core) : core_(core) { setPlace({480, 268, 960, 544}); }
    bool pumpEvents() override { return false; }
    void present() override {}
    void setTitle(const char*) override {}
    PixelSize setSize(int width, int height) override { return {width, height}; }
    void hide() override {}
    PixelSize screenSize() const override { return {1920, 1080}; }
    void setFullscreen(bool on) override { fullscreen_ = on; }
    bool isFullscreen() const override { return fullscreen_; }
    std::optional<PixelArea> place() const override { return area_; }
    void setPlace(const PixelArea& area) override {
        area_ = area;
        core_.handle(WindowEvent::resized(area.width, area.height));
    }
    bool copyText(const std::string&) override { return false; }
    std::vector<PixelArea> screens() const override { return {{0, 0, 1920, 1080}}; }

private:
    WindowCore& core_;
    PixelArea area_;
    bool fullscreen_ = false;
};

class RememberedWindow : public testing::Test {
protected:
    // One run of a game: its window as it opens.
    struct Run {
        explicit Run(const std::string& path, int width = 960) : window("Test", width, 544), path_(path) {
            window.backend = std::make_unique<DeskBackend>(window.core);
            restorePlace(window, path);
        }
        ~Run() { rememberPlace(window, path_); }
        PixelArea area() const { return *window.backend->place(); }

        WindowsWindow window;
        std::string path_;
    };

    TemporaryFolder folder_;
    std::string path_ = (folder_ / "window.txt").string();
};

TEST_F(RememberedWindow, TheNextRunOpensWhereThisOneWasClosed) {
    {
        Run run(path_);
        EXPECT_EQ(run.area(), (PixelArea{480, 268, 960, 544}));
        run.window.backend->setPlace({5, 6, 1200, 700});
        run.window.backend->setFullscreen(true);
    }
    {
        Run run(path_);
        EXPECT_EQ(run.area(), (PixelArea{5, 6, 1200, 700}));
        EXPECT_EQ(run.window.core.clientWidth(), 1200);
        EXPECT_TRUE(run.window.backend->isFullscreen());
        run.window.backend->setFullscreen(false);
        run.window.backend->setPlace({480, 268, 960, 544});
    }
    EXPECT_FALSE(Run(path_).window.backend->isFullscreen());
    EXPECT_EQ(Run(path_).area(), (PixelArea{480, 268, 960, 544}));
    EXPECT_EQ(Run(path_, 640).area(), (PixelArea{480, 268, 960, 544})) << "the game has another size now";
}

TEST_F(RememberedWindow, AnUntouchedWindowLeavesNoFile) {
    { const Run run(path_); }
    EXPECT_FALSE(std::filesystem::exists(path_));
    Run((folder_ / "no/such/folder/window.txt").string()).window.backend->setPlace({1, 1, 2, 2});
}

TEST_F(RememberedWindow, ABadFileIsIgnoredAndMended) {
    ASSERT_TRUE(writeWholeFile(path_, std::string(5000, 'x')));
    {
        Run run(path_);
        EXPECT_EQ(run.area(), (PixelArea{480, 268, 960, 544}));
        run.window.backend->setPlace({7, 8, 960, 544});
    }
    EXPECT_EQ(Run(path_).area(), (PixelArea{7, 8, 960, 544}));
}

}  // namespace
}  // namespace kelmora
