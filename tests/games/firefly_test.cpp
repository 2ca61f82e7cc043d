#include "base/whole_file.h"
#include "games/staged_game.h"
#include "shim/shim.h"
#include "support/environment.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

class Firefly : public StagedGame {
protected:
    Firefly() : StagedGame("firefly") {
        setEnvironment("KELMORA_INPUT", (sourceDirectory / "games/firefly/recorded.txt").string().c_str());
    }
};

// The recording catches every firefly.
TEST_F(Firefly, TheRecordingShowsTheStoredFrames) {
    play();
    EXPECT_EQ(runtime_.engine.pullVariable("phase").toString(), "end");
    EXPECT_EQ(runtime_.window, nullptr);
    expectStoredFrames();
}

TEST_F(Firefly, SaysSoWhereThereIsNoWindow) {
    if (platform_is_windows()) GTEST_SKIP() << "Windows always has a display";
    for (const char* name : {"KELMORA_VIDEO", "DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"})
        setEnvironment(name, nullptr);
    EXPECT_THROW(play(), std::exception);
    EXPECT_EQ(host_.output, "Firefly Glade cannot open a window here.\n");
}

TEST_F(Firefly, ThePicturesAreWhatTheirScriptPaints) {
    const std::string script = (sourceDirectory / "games/firefly/art/make_art.vs").generic_string();
    const fs::path kept = package() / "images";
    runtime_.engine.pushVariable("arguments",
                                 Variable::array({Variable::text((root_ / "made").generic_string())}));
    runtime_.engine.runBytecode(runtime_.engine.compileToBytecode(*readWholeFile(script), script));
    EXPECT_EQ(frameSums(root_ / "made"), frameSums(kept));
    for (const auto& entry : fs::directory_iterator(kept))
        EXPECT_EQ(readWholeFile((root_ / "made" / entry.path().filename().string()).string()),
                  readWholeFile(entry.path().string()))
            << entry.path().filename();
}

}  // namespace
}  // namespace kelmora
