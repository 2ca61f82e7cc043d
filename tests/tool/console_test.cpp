#include "tool/play/console.h"

#include <gtest/gtest.h>

#include "host/boot_image.h"
#include "host/console_host.h"
#include "platform/window_core.h"
#include "support/by_tool.h"

// The console over a game, as an author types into it.
namespace kelmora {
namespace {

class Typist : public UpdateWatcher {
public:
    Typist(Console& console, std::vector<std::string> lines) : console_(console), lines_(std::move(lines)) {}

    void beforeUpdate(int update, WindowCore& core) override {
        console_.beforeUpdate(core);
        if (update == 1) press(core, "\x7b");
        const auto index = static_cast<std::size_t>(update / 2);
        if (update % 2 == 0 && index <= lines_.size()) type(core, lines_[index - 1]);
        if (index == lines_.size() + 1) core.requestClose();
    }
    void afterUpdate(int, WindowCore& core) override {
        shown_.clear();
        for (const OverlayLine& line : console_.lines()) shown_ += line.text + "\n";
        sawKeys_ = sawKeys_ || core.takePress() != nullptr;
    }

    const std::string& shown() const { return shown_; }
    bool sawKeys() const { return sawKeys_; }

private:
    static void press(WindowCore& core, const std::string& keys) {
        for (const char key : keys) {
            core.handle(WindowEvent::keyDown(static_cast<unsigned char>(key)));
            core.handle(WindowEvent::keyUp(static_cast<unsigned char>(key)));
        }
    }
    // Keys come with their characters; a tab and a line's end have none.
    static void type(WindowCore& core, const std::string& line) {
        for (const char letter : line) {
            press(core, letter == '\t' ? "\x09" : "A");
            if (letter != '\t') core.handle(WindowEvent::typed(static_cast<unsigned char>(letter)));
        }
        press(core, "\x0d");
    }

    Console& console_;
    std::vector<std::string> lines_;
    std::string shown_;
    bool sawKeys_ = false;
};

class ConsoleOverGame : public ByTool {
protected:
    ConsoleOverGame() {
        write("g/Resources/package/graphics.vs", "");
        write("g/Resources/scripts/visual-novel.vs",
              "score = 3\nbag = {apples = 2, boots = [1, 2]}\nround = 0\nMetal[\"spawnWindow\"](\"g\", 320, "
              "200)\n"
              "while not Metal[\"checkClose\"]()\n    round += 1\n    Metal[\"updateInput\"]()\n"
              "    if VESPER_KEY_A\n        seen = true\n    end\n    Metal[\"forceUpdate\"]()\nend\n");
    }
    // What stands there after the lines were typed; the prompt of the last one goes.
    std::string typed(std::vector<std::string> lines) {
        ConsoleHost host;
        GameSession session(host, bootText(), folder_ / "g", true);
        Console console(session);
        Typist typist(console, std::move(lines));
        EXPECT_EQ(session.play(typist).value_or(""), "");
        EXPECT_FALSE(typist.sawKeys());
        EXPECT_TRUE(globalOf(session.runtime().engine, "seen").isNot());
        score_ = globalOf(session.runtime().engine, "score").toString();
        return typist.shown();
    }
    void expectShown(std::vector<std::string> lines, const std::string& part) {
        const std::string shown = typed(std::move(lines));
        EXPECT_NE(shown.find(part), std::string::npos) << shown;
    }

    std::string score_;
};

TEST_F(ConsoleOverGame, ShowsValuesAndChangesThem) {
    expectShown({"score + 1"}, "vesper> score + 1\n4\n");
    expectShown({"bag"}, "{apples = 2, boots = [1, 2]}\n");
    expectShown({"\"ä\" + 1"}, "\"ä1\"\n");
    expectShown({"score = 70", "score"}, "vesper> score\n70\n");
    EXPECT_EQ(score_, "70");
    expectShown({"for i = 1, 3", "score"}, "\n3\n");
    expectShown({"nobody(1)", "score"}, "vesper> score\n3\n");
    expectShown({"error(\"no\")"}, "\nno\n");
}

TEST_F(ConsoleOverGame, SpeaksTheOtherLanguages) {
    expectShown({"lua: 6 * 7"}, "\n42\n");
    expectShown({"lua: x = 5", "lua: x"}, "vesper> lua: x\n5\n");
    expectShown({"lua: vesper_var(\"score\", 9)", "score"}, "\n9\n");
    expectShown({"rwby: 1 + 1"}, "\n2\n");
    expectShown({"\t", "7 - 2"}, "lua> 7 - 2\n5\n");
    expectShown({"lua: error(\"out\")", "score"}, "out");
}

TEST_F(ConsoleOverGame, CompletesAndWatches) {
    expectShown({"sco\t"}, "vesper> score\n3\n");
    expectShown({"bag[\"ap\t\"]"}, "vesper> bag[\"apples\"]\n2\n");
    expectShown({"VESPER_MOUSE_\t"}, "VESPER_MOUSE_1  ");
    const std::string shown = typed({"watch round", "score"});
    EXPECT_EQ(shown.find("round = "), 0u) << shown;
    EXPECT_EQ(typed({"watch round", "unwatch round"}).find("round = "), std::string::npos);
}

TEST_F(ConsoleOverGame, IsOpenedByARecordedInput) {
    write("in.txt",
          "2 keydown F12\n2 keyup F12\n3 type score = 5\n3 keydown RETURN\n3 keyup RETURN\n"
          "5 type score\n5 keydown RETURN\n5 keyup RETURN\n");
    EXPECT_EQ(vesper("play g --headless --input in.txt --frames 9 --shot open.png --record again.txt").text,
              "");
    EXPECT_EQ(vesper("play g --headless --input again.txt --frames 9 --shot again.png").text, "");
    EXPECT_EQ(read("open.png"), read("again.png"));
    EXPECT_EQ(vesper("play g --headless --frames 9 --shot closed.png").text, "");
    EXPECT_NE(read("open.png"), read("closed.png"));
    write("in.txt", "2 type\n");
    EXPECT_EQ(vesper("play g --headless --input in.txt").exitCode, 2);
}

TEST(TextField, EditsWholeCharactersAndRemembers) {
    TextField field;
    for (const char byte : std::string("aäb")) field.insert(byte);
    field.moveLeft();
    field.eraseBefore();
    EXPECT_EQ(field.text(), "ab");
    field.moveToStart();
    field.eraseBehind();
    EXPECT_EQ(field.take(), "b");
    field.showOlder();
    field.showOlder();
    EXPECT_EQ(field.text(), "b");
    field.showNewer();
    EXPECT_EQ(field.text(), "");
}

}  // namespace
}  // namespace kelmora
