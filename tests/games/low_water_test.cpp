#include <fstream>
#include <sstream>

#include "base/whole_file.h"
#include "games/staged_game.h"
#include "shim/shim.h"
#include "support/environment.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

class LowWater : public StagedGame {
protected:
    LowWater() : StagedGame("low-water") {}

    // A script that looks at one night, by way of night.vs.
    void playNight(const char* name) {
        const fs::path scripts = sourceDirectory / "tests/games/low-water";
        fs::copy_file(scripts / "night.vs", root_ / "Resources/scripts/night.vs");
        play(scripts / name);
    }

    // Tracing every frame of a night would take minutes: only those that the recording keeps are drawn.
    void drawFramesOf(const fs::path& recording) {
        std::vector<Variable> frames;
        std::ifstream lines(recording);
        for (std::string line; std::getline(lines, line);)
            if (line.find(" shot ") != std::string::npos)
                frames.push_back(Variable::integer(std::stoi(line)));
        runtime_.engine.pushVariable("framesToDraw", Variable::array(std::move(frames)));
    }
};

// From the title to the end, and into the kept night again; keys and mouse.
TEST_F(LowWater, TheRecordingBringsAllLampsHome) {
    const fs::path recording = sourceDirectory / "games/low-water/recorded.txt";
    setEnvironment("KELMORA_INPUT", recording.string().c_str());
    drawFramesOf(recording);
    play();
    EXPECT_EQ(runtime_.engine.pullVariable("endingSeen").toString(), "true");
    EXPECT_EQ(runtime_.engine.pullVariable("playing").toString(), "false");
    EXPECT_EQ(runtime_.window, nullptr);
    EXPECT_EQ(host_.output, "");
    expectStoredFrames();
}

TEST_F(LowWater, WallsWaterBanksAndRailsStopAndTheBridgeCarries) {
    playNight("walking.vs");
    EXPECT_EQ(host_.output,
              "house\tfalse\n"
              "bank\tfalse\n"
              "stream\tfalse\n"
              "rail\tfalse\n"
              "gravestone\tfalse\n"
              "pillar\tfalse\n"
              "bridge\ttrue\ttrue\n"
              "altar\tfalse\n");
}

// Only its own door takes a lamp; every other says what is missing there.
TEST_F(LowWater, EveryLampHasOneDoorAndEveryVaultAWayToItsEnd) {
    playNight("doors_and_vaults.vs");
    EXPECT_EQ(host_.output,
              "bell bell\nhive hive\noar oar\nshuttle shuttle\nwheel wheel\n"
              "refused\t20\t0\n"
              "vaults\t12\t12\n"
              "families\t60\ttrue\n");
}

TEST_F(LowWater, EachLampComesByItsOwnTemper) {
    playNight("tempers.vs");
    EXPECT_EQ(host_.output,
              "gold\tfollows\n"
              "rose\twaits\tfollows\n"
              "green\tstartled\tfollows\n"
              "violet\twaits\twaits\tfollows\n"
              "blue\twaits\tfollows\n");
}

TEST_F(LowWater, AKeptNightComesBackAndAChangedOneStaysClosed) {
    playNight("kept_nights.vs");
    EXPECT_EQ(host_.output,
              "empty\tfalse\n"
              "good\ttrue\n"
              "same names\ttrue\ttrue\n"
              "vaults\tgold\tfollows\tfalse\ttrue\n"
              "damaged\n"
              "another telling\tfalse\n");
}

TEST_F(LowWater, SettingsAreFeltAndKeptAndAClosedWindowKeepsTheNight) {
    playNight("settings.vs");
    EXPECT_EQ(host_.output,
              "0\t0\tnot\t2\n"
              "Air and water: 10 %\tBells and steps: 20 %\tFull screen: off\n"
              "Full screen: on\ttrue\n"
              "true\tWalk on\tempty\n"
              "good\n"
              "1\t2\n");
}

// Whatever is missing is told on the screen, and the night goes on.
TEST_F(LowWater, GoesOnWithoutPicturesFontsSoundsAndWords) {
    for (const char* name : {"textures/slate.png", "textures/still-wet.png", "audio/bell.wav",
                             "audio/lake.wav", "words/stones.txt", "fonts/Cardo104s.ttf"})
        fs::remove(package() / name);
    playNight("missing.vs");
    EXPECT_EQ(host_.output,
              "The font Cardo104s.ttf is missing.\n"
              "The picture slate is missing.\n"
              "The picture still-wet is missing.\n"
              "The sound bell is missing.\n"
              "The sound lake is missing.\n"
              "The words of the parish are missing.\n"
              "true\n");
}

TEST_F(LowWater, ThePicturesAreWhatTheirScriptPaints) {
    const std::string art = (sourceDirectory / "games/low-water/art/make_art.vs").generic_string();
    runtime_.engine.pushVariable("arguments",
                                 Variable::array({Variable::text((root_ / "made").generic_string())}));
    runtime_.engine.runBytecode(runtime_.engine.compileToBytecode(*readWholeFile(art), art));
    EXPECT_EQ(frameSums(root_ / "made"), frameSums(package() / "textures"));
}

TEST_F(LowWater, SaysSoWhereThereIsNoWindow) {
    if (platform_is_windows()) GTEST_SKIP() << "Windows always has a display";
    for (const char* name : {"KELMORA_VIDEO", "DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"})
        setEnvironment(name, nullptr);
    EXPECT_THROW(play(), std::exception);
    EXPECT_EQ(host_.output, "Low Water cannot open a window here.\n");
}

}  // namespace
}  // namespace kelmora
