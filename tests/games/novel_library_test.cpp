#include <cstdlib>

#include "base/whole_file.h"
#include "games/staged_game.h"
#include "support/environment.h"
#include "support/places.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

const fs::path folder = fs::path(sourceFolder()) / "tests/games/novel";

// A novel of two scenes without pictures, played by lists of presses.
class NovelLibrary : public StagedGame {
protected:
    NovelLibrary() : StagedGame("novel", folder / "game") {
        fs::copy_file(folder / "driver.vs", root_ / "Resources/scripts/driver.vs");
    }

    // What the script prints is kept beside it. KELMORA_STORE_FRAMES=1 stores it anew.
    void expectSaid(const std::string& name) {
        play(folder / (name + ".vs"));
        const std::string path = (folder / (name + ".txt")).string();
        if (std::getenv("KELMORA_STORE_FRAMES")) {
            EXPECT_TRUE(writeWholeFile(path, host_.output));
        }
        EXPECT_EQ(host_.output, readWholeFile(path));
    }
};

TEST_F(NovelLibrary, ChoosesGoesBackSkipsAndTurnsPages) {
    expectSaid("reading");
}

TEST_F(NovelLibrary, FindsAKeptPageInAnEditedStory) {
    expectSaid("edits");
}

TEST_F(NovelLibrary, KeepsGamesAsksBeforeLossAndTellsDamage) {
    expectSaid("saves");
}

TEST_F(NovelLibrary, SettingsAreFeltKeptAndMended) {
    expectSaid("comforts");
}

TEST_F(NovelLibrary, SpeaksOtherLanguagesFromTables) {
    expectSaid("languages");
}

TEST_F(NovelLibrary, IsReadAloudAndCopied) {
    expectSaid("aloud");
}

TEST_F(NovelLibrary, TellsTheAuthorAllFaultsOfAStoryAtOnce) {
    try {
        play(folder / "faults.vs");
        ADD_FAILURE() << "the story was taken";
    } catch (const std::exception& error) {
        EXPECT_EQ(std::string(error.what()),
                  "Novel: the story has faults:\n"
                  "scene inn, entry 1: there is no place cellar\n"
                  "scene inn, entry 2: go leads nowhere: nowhere\n"
                  "scene inn, entry 2: nobody is called bob\n"
                  "scene inn, entry 3: there is no ending happy\n"
                  "scene inn, entry 3: a choice leads nowhere: moon\n"
                  "scene inn, entry 3: nobody is called eve");
    }
}

// The example of the guide, whole.
TEST_F(NovelLibrary, PlaysTheExampleOfTheGuide) {
    const std::string guide = *readWholeFile((sourceDirectory / "docs/novels.md").string());
    const std::string opening = "```vesper\n";
    const std::size_t start = guide.find(opening) + opening.size();
    const std::string example = guide.substr(start, guide.find("```", start) - start);
    ASSERT_TRUE(writeWholeFile((root_ / "Resources/scripts/visual-novel.vs").string(), example));
    expectSaid("example");
}

}  // namespace
}  // namespace kelmora
