#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "platform/environment.h"
#include "support/by_tool.h"

// An author makes a game, plays it and tests it: each command as it is typed, in an empty folder.
namespace kelmora {
namespace {

namespace fs = std::filesystem;

using GamesByTool = ByTool;

// A recorded input without its remarks.
std::string eventsOf(const std::string& text) {
    std::istringstream lines(text);
    std::string events;
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with('#')) events += line + "\n";
    return events;
}

class NewGame : public GamesByTool, public testing::WithParamInterface<const char*> {};

TEST_P(NewGame, IsFaultlessPlaysAndPassesItsTests) {
    const std::string kind = GetParam();
    expectOutcome("new \"My game\" --kind " + kind, 0, "vesper play \"My game\"");
    const ShellOutcome check = vesper("check \"My game\"");
    EXPECT_EQ(check.text, "");
    EXPECT_EQ(check.exitCode, 0);
    const ShellOutcome played = vesper(
        "play \"My game\" --headless --frames 230 --input \"My game/recorded.txt\" --record again.txt --shot "
        "a.png");
    EXPECT_EQ(played.text, "");
    EXPECT_EQ(played.exitCode, 0);
    EXPECT_TRUE(fs::exists(pathOf("a.png")));
    EXPECT_FALSE(fs::exists(pathOf("My game/Resources/volatile")));
    // The record holds the same events, and shows the same picture when it is played.
    EXPECT_EQ(eventsOf(read("again.txt")), eventsOf(read("My game/recorded.txt")));
    expectOutcome("play \"My game\" --headless --frames 230 --input again.txt --shot b.png", 0, "");
    EXPECT_EQ(read("a.png"), read("b.png"));
    expectOutcome("test \"My game\"", 0, "passed\n");
    EXPECT_NE(read("My game/README.md").find("# My game\n"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Kinds, NewGame, testing::Values("novel", "arcade", "walk"),
                         [](const auto& each) { return std::string(each.param); });

// A library beside the game is only to be had by a copy; what is saved lies with the game all the same.
TEST_F(GamesByTool, SavesOfAGameWithSharedPartsStayWithIt) {
    write("library/shared/say.vs", "said = \"shared\"\n");
    write("inn/libraries.txt", "shared\n");
    write("inn/Resources/volatile/old.plush", "old");
    write("inn/Resources/package/graphics.vs", "");
    write("inn/Resources/scripts/visual-novel.vs",
          "local kept = Vesper[\"getPath\"]() + \"../Resources/volatile/\"\n"
          "runFile(Vesper[\"getPath\"]() + \"../Libraries/shared/say.vs\")\n"
          "Vesper[\"replaceFile\"](kept + \"new.plush\", said)\n"
          "local old = io[\"open\"](kept + \"old.plush\", \"r\")\n"
          "print(old[\"read\"](\"*a\"))\n"
          "old[\"close\"]()\n"
          "os[\"remove\"](kept + \"old.plush\")\n");
    setEnvironment("KELMORA_VIDEO", "memory");
    expectOutcome("play inn", 0, "old\n");
    setEnvironment("KELMORA_VIDEO", nullptr);
    EXPECT_EQ(read("inn/Resources/volatile/new.plush"), "shared");
    EXPECT_FALSE(fs::exists(pathOf("inn/Resources/volatile/old.plush")));
    expectOutcome("play inn --headless", 1, "visual-novel.vs:5");
}

TEST_F(GamesByTool, NewRefusesWhatItWouldSpoilOrCannotName) {
    fs::create_directories(pathOf("taken"));
    write("taken/mine.txt", "kept");
    expectOutcome("new taken", 2, "taken is there already; nothing was changed");
    EXPECT_EQ(read("taken/mine.txt"), "kept");
    EXPECT_EQ(std::distance(fs::directory_iterator(pathOf("taken")), {}), 1);
    for (const char* name : {"a/b", "..", "\"\"", "nul.txt", "COM1", "\"a \"", "a."})
        expectOutcome(std::string("new ") + name, 2, "is no name for a folder");
    expectOutcome("new inn --kind nvel", 2, "unknown kind nvel; did you mean novel?");
    expectOutcome("new inn --knd novel", 2, "unknown option --knd; did you mean --kind?");
    expectOutcome("new inn --font none.ttf", 2, "there is no font none.ttf");
    expectOutcome("new", 2, "new wants one name");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 1);
}

TEST_F(GamesByTool, PlayRefusesAndReports) {
    expectOutcome("play inn --headless", 2, "there is no folder inn");
    fs::create_directories(pathOf("empty"));
    expectOutcome("play empty --headless", 2, "empty is no game: it has no Resources/package/graphics.vs");
    ASSERT_EQ(vesper("new sky --kind arcade").exitCode, 0);
    expectOutcome("play sky --headles", 2, "did you mean --headless?");
    expectOutcome("play sky --headless --shot a.png", 2, "--shot wants --frames");
    expectOutcome("play sky --headless --frames 0", 2, "--frames wants a whole number from 1");
    expectOutcome("play sky --headless --input none.txt", 2, "cannot read the recorded input none.txt");
    write("bad.txt", "1 dance\n");
    expectOutcome("play sky --headless --input bad.txt", 2, "bad.txt, line 1: ");
    expectOutcome("play sky --headless --frames 5 --shot none/a.png", 1,
                  "cannot write the picture none/a.png");

    const std::string script = "sky/Resources/scripts/visual-novel.vs";
    edit(script, "    moveStar()\n", "    moveStr()\n");
    const ShellOutcome failed = vesper("play sky --headless --frames 400");
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_NE(failed.text.find("sky/Resources/scripts/visual-novel.vs:"), std::string::npos) << failed.text;
    EXPECT_NE(failed.text.find("did you mean `moveStar`?"), std::string::npos) << failed.text;
}

TEST_F(GamesByTool, PlayClosesGamesThatDoNotEndAndFixesTheirLuck) {
    fs::create_directories(pathOf("g/Resources/package"));
    fs::create_directories(pathOf("g/Resources/scripts"));
    write("g/Resources/package/graphics.vs", "");
    const std::string script = "g/Resources/scripts/visual-novel.vs";
    const std::string loop = "while true\n    Metal[\"updateInput\"]()\n    Metal[\"forceUpdate\"]()\nend\n";
    write(script, "Metal[\"spawnWindow\"](\"g\", 64, 64)\n" + loop);
    expectOutcome("play g --headless --frames 3", 1, "the game goes on although its window was closed");
    write(script,
          "math[\"randomseed\"](Vesper[\"getGlobalTime\"]())\n"
          "print(math[\"random\"](1, 1000000), Lua[\"runScript\"](\"return math.random(1, 1000000)\"))\n");
    const std::string first = vesper("play g --headless --seed 5").text;
    EXPECT_EQ(vesper("play g --headless --seed 5").text, first);
    EXPECT_NE(vesper("play g --headless --seed 6").text, first);
}

TEST_F(GamesByTool, TestReportsWhatDoesNotHold) {
    ASSERT_EQ(vesper("new inn").exitCode, 0);
    ASSERT_EQ(vesper("new sky --kind arcade").exitCode, 0);
    edit("inn/tests/pay.txt", "choose Pay her", "choose Pay him");
    ShellOutcome outcome = vesper("test inn");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.text.find("inn/tests/pay.txt:7: failed: there is no choice \"Pay him\"; there stands "),
              std::string::npos)
        << outcome.text;
    EXPECT_NE(outcome.text.find("inn/tests/walk.txt: passed, 9 steps, "), std::string::npos) << outcome.text;
    EXPECT_TRUE(outcome.text.ends_with("1 of 2 passed\n"));

    write("vars.txt", "expect variable score 1\n");
    expectOutcome("test sky vars.txt", 1, "vars.txt:1: failed: expected score to be 1, but it is 0");
    write("text.txt", "expect text Nowhere\n");
    expectOutcome(
        "test inn text.txt", 1,
        "expected the text \"Nowhere\", but there stands \"Quit\", \"Settings\", \"Load\", \"New game\", "
        "\"inn\"\n");
    write("slip.txt", "wait\n");
    expectOutcome("test sky slip.txt", 2, "slip.txt:1: expected a number of updates");
    expectOutcome("test sky none.txt", 2, "there is no test none.txt");
    fs::remove_all(pathOf("sky/tests"));
    expectOutcome("test sky", 2, "the game has no tests");

    edit("sky/Resources/scripts/visual-novel.vs", "    moveStar()\n", "    moveStr()\n");
    write("wait.txt", "wait 9\n");
    outcome = vesper("test sky wait.txt");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.text.find("wait.txt:1: failed: the game failed\n"), std::string::npos) << outcome.text;
    EXPECT_NE(outcome.text.find("did you mean `moveStar`?"), std::string::npos) << outcome.text;
}

TEST_F(GamesByTool, TestComparesPictures) {
    ASSERT_EQ(vesper("new sky --kind arcade").exitCode, 0);
    write("shot.txt", "wait 4\nshot sea.png within 8\nclick 40 40\nwait 3\n");
    expectOutcome("test sky shot.txt", 0, "stored sea.png, which was not there");
    const ShellOutcome again = vesper("test sky shot.txt");
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_EQ(again.text.find("stored"), std::string::npos);
    const std::string script = "sky/Resources/scripts/visual-novel.vs";
    edit(script, "SEA = [24, 52, 88]", "SEA = [24, 56, 80]");
    expectOutcome("test sky shot.txt", 0, "1 of 1 passed");
    edit(script, "SEA = [24, 56, 80]", "SEA = [24, 56, 97]");
    expectOutcome("test sky shot.txt", 1,
                  "shot.txt:2: failed: the picture is not sea.png, colours are off by up to 9");
    EXPECT_TRUE(fs::exists(pathOf("sea.png.seen.png")));
}

}  // namespace
}  // namespace kelmora
