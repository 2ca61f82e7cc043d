#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "base/whole_file.h"
#include "codec/crc32.h"
#include "codec/png.h"
#include "host/boot_image.h"
#include "host/startup.h"
#include "platform/shim.h"
#include "support/capture_host.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

const fs::path sourceDirectory = KELMORA_SOURCE_DIR;
const fs::path frameList = sourceDirectory / "tests/games/firefly_frames.txt";

// CRC-32 of a picture's pixels, so that the way of packing the file does not count.
std::string pictureSum(const fs::path& path) {
    vh::png::Image image;
    if (!vh::png::load_file(path.string().c_str(), image)) return "unreadable";
    std::ostringstream text;
    text << image.width << 'x' << image.height << '-' << std::hex << vh::png::crc32(image.pixels);
    return text.str();
}

// The frames' sums by name, one pair a line.
std::string frameSums(const fs::path& folder) {
    std::map<std::string, std::string> sums;
    for (const auto& entry : fs::directory_iterator(folder))
        sums[entry.path().filename().string()] = pictureSum(entry.path());
    std::string text;
    for (const auto& [name, sum] : sums) text += name + " " + sum + "\n";
    return text;
}

class Firefly : public testing::Test {
protected:
    Firefly() {
        fs::create_directories(root_ / "bin");
        fs::create_directories(root_ / "made");
        fs::copy(sourceDirectory / "games/firefly/Resources", root_ / "Resources",
                 fs::copy_options::recursive);
        setEnvironment("KELMORA_VIDEO", "memory");
        setEnvironment("KELMORA_INPUT", (sourceDirectory / "games/firefly/recorded.txt").string().c_str());
        setEnvironment("KELMORA_SHOTS", (root_ / "made").string().c_str());
        runtime_.path = (root_ / "bin/").generic_string();
        registerFunctions(runtime_);
    }
    ~Firefly() override {
        for (const char* name : {"KELMORA_VIDEO", "KELMORA_INPUT", "KELMORA_SHOTS"})
            setEnvironment(name, nullptr);
    }

    void play() {
        runtime_.engine.pushVariable("fastForward", Variable::boolean(true));
        runEmbeddedStartupScript(runtime_, bootImage(), startupSourcePath(runtime_));
    }

    TemporaryFolder root_;
    CaptureHost host_;
    Runtime runtime_{host_};
};

// The recording catches every firefly. KELMORA_STORE_FRAMES=1 stores the frames that come out now.
TEST_F(Firefly, TheRecordingShowsTheStoredFrames) {
    play();
    EXPECT_EQ(runtime_.engine.pullVariable("phase").toString(), "end");
    EXPECT_EQ(runtime_.window, nullptr);
    const std::string seen = frameSums(root_ / "made");
    if (std::getenv("KELMORA_STORE_FRAMES")) writeWholeFile(frameList.string(), seen);
    EXPECT_EQ(seen, readWholeFile(frameList.string()));
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
    const fs::path kept = root_ / "Resources/package/images";
    runtime_.engine.pushVariable("arguments",
                                 Variable::array({Variable::text((root_ / "made").generic_string())}));
    runtime_.engine.runBytecode(runtime_.engine.compileToBytecode(*readWholeFile(script), script));
    EXPECT_EQ(frameSums(root_ / "made"), frameSums(kept));
    for (const auto& entry : fs::directory_iterator(kept))
        EXPECT_EQ(readWholeFile((root_ / "made" / entry.path().filename()).string()),
                  readWholeFile(entry.path().string()))
            << entry.path().filename();
}

}  // namespace
}  // namespace kelmora
