#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>

#include "base/whole_file.h"
#include "codec/png.h"
#include "host/boot_image.h"
#include "host/startup.h"
#include "plush/live_images.h"
#include "support/capture_host.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

const fs::path sourceDirectory = KELMORA_SOURCE_DIR;

// FNV-1a of a picture's size and pixels.
std::string pictureChecksum(const fs::path& path) {
    vh::png::Image image;
    if (!vh::png::load_file(path.string().c_str(), image)) return "unreadable";
    std::uint64_t hash = 14695981039346656037u;
    const auto mix = [&](std::uint64_t value) { hash = (hash ^ value) * 1099511628211u; };
    mix(static_cast<std::uint64_t>(image.width));
    mix(static_cast<std::uint64_t>(image.height));
    for (const unsigned char byte : image.pixels) mix(byte);
    std::ostringstream text;
    text << std::hex << hash;
    return text.str();
}

std::map<std::string, std::string> storedChecksums() {
    std::map<std::string, std::string> stored;
    std::istringstream lines(
        readWholeFile((sourceDirectory / "tests/games/firefly_frames.txt").string()).value_or(""));
    for (std::string name, checksum; lines >> name >> checksum;) stored[name] = checksum;
    return stored;
}

class Firefly : public testing::Test {
protected:
    Firefly() {
        fs::create_directories(root_ / "bin");
        fs::create_directories(root_ / "shots");
        fs::copy(sourceDirectory / "games/firefly/Resources", root_ / "Resources",
                 fs::copy_options::recursive);
        setenv("KELMORA_VIDEO", "memory", 1);
        setenv("KELMORA_INPUT", (sourceDirectory / "games/firefly/recorded.txt").c_str(), 1);
        setenv("KELMORA_SHOTS", (root_ / "shots").c_str(), 1);
        runtime_.path = (root_ / "bin/").string();
        registerFunctions(runtime_);
    }
    ~Firefly() override {
        for (const char* name : {"KELMORA_VIDEO", "KELMORA_INPUT", "KELMORA_SHOTS"}) unsetenv(name);
        while (!livePlushImages.empty()) killPlushImage(*livePlushImages.begin());
    }

    TemporaryFolder root_;
    CaptureHost host_;
    Runtime runtime_{host_};
};

// The recording brings all lights home; the frames on the way have to be the stored ones, on every target.
// KELMORA_STORE_FRAMES=1 stores what comes out now.
TEST_F(Firefly, TheRecordedWalkShowsTheStoredFrames) {
    runtime_.engine.pushVariable("fastForward", Variable::boolean(true));
    runEmbeddedStartupScript(runtime_, bootImage(), startupSourcePath(runtime_));
    EXPECT_EQ(runtime_.engine.pullVariable("caught").toString(), "7");
    EXPECT_EQ(runtime_.window, nullptr);
    std::map<std::string, std::string> seen;
    for (const auto& entry : fs::directory_iterator(root_ / "shots"))
        seen[entry.path().filename().string()] = pictureChecksum(entry.path());
    if (std::getenv("KELMORA_STORE_FRAMES")) {
        std::string text;
        for (const auto& [name, checksum] : seen) text += name + " " + checksum + "\n";
        writeWholeFile((sourceDirectory / "tests/games/firefly_frames.txt").string(), text);
    }
    EXPECT_EQ(seen.size(), 8u);
    EXPECT_EQ(seen, storedChecksums());
}

TEST_F(Firefly, ThePicturesAreWhatTheirScriptPaints) {
    const fs::path painted = root_ / "painted";
    fs::create_directories(painted);
    const std::string script = (sourceDirectory / "games/firefly/art/make_art.vs").string();
    runtime_.engine.pushVariable("arguments", Variable::array({Variable::text(painted.string())}));
    runtime_.engine.runBytecode(runtime_.engine.compileToBytecode(*readWholeFile(script), script));
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(root_ / "Resources/package/images")) {
        EXPECT_EQ(readWholeFile((painted / entry.path().filename()).string()),
                  readWholeFile(entry.path().string()))
            << entry.path().filename();
        ++count;
    }
    EXPECT_EQ(count, 8u);
}

}  // namespace
}  // namespace kelmora
