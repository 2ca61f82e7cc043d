#include <sstream>

#include "base/whole_file.h"
#include "games/staged_game.h"
#include "shim/shim.h"
#include "support/environment.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

class ElevenMinutes : public StagedGame {
protected:
    ElevenMinutes() : StagedGame("eleven-minutes") {}

    fs::path script(const char* name) { return sourceDirectory / "tests/games/eleven-minutes" / name; }
};

// From the title to one ending, back to a page that was kept, and on to the other; keys and mouse.
TEST_F(ElevenMinutes, TheRecordingReadsBothEndings) {
    setEnvironment("KELMORA_INPUT", (sourceDirectory / "games/eleven-minutes/recorded.txt").string().c_str());
    play();
    EXPECT_EQ(runtime_.engine.pullVariable("novelEnding").toString(), "steady");
    EXPECT_EQ(runtime_.engine.pullVariable("novelPlaying").toString(), "false");
    EXPECT_EQ(runtime_.window, nullptr);
    EXPECT_EQ(host_.output, "");
    expectStoredFrames();
}

// The better ending wants the girl brought along, trust from one of the others at least, and the last choice.
TEST_F(ElevenMinutes, EveryPageFitsAndEveryChoiceLeadsToAnEnding) {
    play(script("whole_story.vs"));
    EXPECT_EQ(host_.output,
              "told asked promised: crossing steady\n"
              "told asked: steady steady\n"
              "told promised: crossing steady\n"
              "told: steady steady\n"
              "asked promised: crossing steady\n"
              "asked: steady steady\n"
              "promised: steady steady\n"
              ": steady steady\n");
}

TEST_F(ElevenMinutes, PagesThatTheFirstEditionKeptComeBack) {
    play(script("kept_pages.vs"));
    EXPECT_EQ(host_.output,
              "Continue\n"
              "2\ttrue\tStrand-runes. The… library tobias {\"told\": true}\n"
              "1\tfalse\t\n"
              "There is nothing before this page.\n"
              "Nothing has been saved here yet.\n"
              "3\tfalse\t\n"
              "This save cannot be read.\n"
              "2\tfalse\t\n"
              "This save was changed after it was made, so it stays closed.\n"
              "2\ttrue\tBut between two teeth of the…   {\"asked\": true}\n"
              "The place the moon is no longer in the story. The game goes on without it.\n"
              "nobody is no longer in the story. The game goes on without it.\n"
              "true\tgood\n"
              "2\ttrue\tBut between two teeth of the…   {\"asked\": true}\n");
}

// Whatever is missing is told on the screen, and the story goes on.
TEST_F(ElevenMinutes, GoesOnWithoutPicturesFontsAndSounds) {
    for (const char* name : {"pictures/dusk-sea.png", "pictures/maud.png", "ui/no.png", "fonts/Cardo104s.ttf",
                             "audio/light.ogg", "audio/tick.wav", "audio/click.wav"})
        fs::remove(package() / name);
    play(script("missing.vs"));
    EXPECT_EQ(host_.output,
              "The font Cardo104s.ttf is missing.\n"
              "The sound light is missing.\n"
              "The picture dusk-sea.png is missing.\n"
              "The sound tick is missing.\n"
              "The picture maud.png is missing.\n"
              "true\tThree nights\n");
}

TEST_F(ElevenMinutes, ShowsItsPicturesWithoutAnyFont) {
    fs::remove_all(package() / "fonts");
    play(script("missing.vs"));
    EXPECT_NE(host_.output.find("true\tThree nights\n"), std::string::npos) << host_.output;
}

// The small ones at least: places and people take their time.
TEST_F(ElevenMinutes, WeatherAndStandInsAreWhatTheirScriptPaints) {
    const std::string art = (sourceDirectory / "games/eleven-minutes/art/make_art.vs").generic_string();
    const std::string folder = (root_ / "made").generic_string();
    runtime_.engine.pushVariable("arguments",
                                 Variable::array({Variable::text(folder), Variable::text("ui")}));
    runtime_.engine.runBytecode(runtime_.engine.compileToBytecode(*readWholeFile(art), art));
    const std::string kept = frameSums(package() / "ui") + frameSums(package() / "pictures");
    std::istringstream painted(frameSums(folder));
    int pictures = 0;
    for (std::string line; std::getline(painted, line); ++pictures)
        EXPECT_NE(kept.find(line + "\n"), std::string::npos) << line;
    EXPECT_GT(pictures, 6);
}

TEST_F(ElevenMinutes, SaysSoWhereThereIsNoWindow) {
    if (platform_is_windows()) GTEST_SKIP() << "Windows always has a display";
    for (const char* name : {"KELMORA_VIDEO", "DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"})
        setEnvironment(name, nullptr);
    EXPECT_THROW(play(), std::exception);
    EXPECT_EQ(host_.output, "Eleven Minutes Dark cannot open a window here.\n");
}

}  // namespace
}  // namespace kelmora
