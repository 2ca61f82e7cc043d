#include <gtest/gtest.h>

#include <filesystem>

#include "support/by_tool.h"

// A game is played at random: what a report says, and that a failure can be had again.
namespace kelmora {
namespace {

class Roam : public ByTool {
protected:
    // A report without the line that tells how long it took.
    std::string report(const std::string& arguments, int exitCode) const {
        const ShellOutcome outcome = vesper("roam " + arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.text;
        return outcome.text.substr(0, outcome.text.find(" s of the game in"));
    }
    static bool has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }
};

TEST_F(Roam, TellsWhatOfANovelWasReachedTheSameForTheSameSeed) {
    ASSERT_EQ(vesper("new inn").exitCode, 0);
    edit("inn/Resources/scripts/visual-novel.vs", "Novel[\"play\"](",
         "Novel[\"scene\"](\"cellar\", [{text = \"Dark.\", when = \"lamp\"}])\n\nNovel[\"play\"](");
    const std::string first = report("inn --runs 3 --frames 500 --seed 4", 0);
    EXPECT_TRUE(has(first, "3 runs, 1500 updates, seed 4\nscenes     2 of 3 reached\n  never: cellar\n"))
        << first;
    EXPECT_TRUE(has(first, "endings    2 of 2 reached\npages")) << first;
    EXPECT_TRUE(has(first, "failures   0\n")) << first;
    EXPECT_EQ(report("inn --runs 3 --frames 500 --seed 4", 0), first);
    EXPECT_FALSE(std::filesystem::exists(pathOf("inn/Resources/volatile")));
}

TEST_F(Roam, TellsFunctionsAndTextsOfOtherGames) {
    ASSERT_EQ(vesper("new sky --kind arcade").exitCode, 0);
    const std::string told = report("sky --runs 2 --frames 300", 0);
    EXPECT_TRUE(has(told, "functions ")) << told;
    EXPECT_TRUE(has(told, "texts ")) << told;
    EXPECT_FALSE(has(told, "lua.vs")) << told;
}

TEST_F(Roam, RecordsAFailureThatPlayHasAgain) {
    ASSERT_EQ(vesper("new inn").exitCode, 0);
    edit("inn/Resources/scripts/visual-novel.vs", "ending = \"dry\"", "ending = \"dry\", act = leave");
    edit("inn/Resources/scripts/visual-novel.vs", "Novel[\"people\"](",
         "function leave(entry)\n    leaveTheInn()\nend\nNovel[\"people\"](");
    const std::string told = report("inn --runs 4 --frames 400", 1);
    EXPECT_TRUE(has(told, "failures   1\n")) << told;
    EXPECT_TRUE(has(told, "`leaveTheInn` is nothing here")) << told;
    EXPECT_TRUE(has(told, "inn/Resources/scripts/visual-novel.vs:")) << told;
    const std::string mark = "To have it again:\n    vesper ";
    ASSERT_TRUE(has(told, mark)) << told;
    std::string again = told.substr(told.find(mark) + mark.size());
    again.resize(again.find('\n'));
    const ShellOutcome played = vesper(again);
    EXPECT_EQ(played.exitCode, 1);
    EXPECT_TRUE(has(told, played.text)) << played.text;
    EXPECT_TRUE(has(played.text, "`leaveTheInn` is nothing here")) << played.text;
}

TEST_F(Roam, EndsWhatNeverUpdatesAndRefusesWrongUse) {
    write("g/Resources/package/graphics.vs", "");
    write("g/Resources/scripts/visual-novel.vs",
          "Metal[\"spawnWindow\"](\"g\", 64, 48)\nMetal[\"forceUpdate\"]()\nwhile true\nend\n");
    EXPECT_TRUE(has(report("g --runs 1", 1), "works on and on without updating its window"));
    EXPECT_TRUE(has(vesper("roam").text, "roam wants one game's folder"));
    EXPECT_TRUE(has(vesper("roam g --seeds 3").text, "did you mean --seed?"));
    EXPECT_EQ(vesper("roam g --runs 0").exitCode, 2);
}

}  // namespace
}  // namespace kelmora
