#include "tool/play/play_script.h"

#include <gtest/gtest.h>

#include "platform/recorded_input.h"
#include "tool/play/input_text.h"
#include "tool/tool_options.h"

namespace kelmora {
namespace {

std::string failureOf(std::string_view text) {
    try {
        parsePlayScript(text, "t");
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

TEST(PlayScript, ReadsItsSteps) {
    using Verb = PlayStep::Verb;
    const auto steps = parsePlayScript(
        "# a remark\n\npress return\r\n\tclick 3 4\nchoose  Pay her \nwait 10\n"
        "expect text two  words\nexpect variable coins -2 left\nshot a.png within 3\nshot b.png",
        "t");
    ASSERT_EQ(steps.size(), 8u);
    EXPECT_EQ(steps[0].verb, Verb::press);
    EXPECT_EQ(steps[0].key, 13);
    EXPECT_EQ(steps[0].line, 3);
    EXPECT_EQ(steps[1].x * 10 + steps[1].y, 34);
    EXPECT_EQ(steps[2].text, "Pay her");
    EXPECT_EQ(steps[3].count, 10);
    EXPECT_EQ(steps[4].text, "two  words");
    EXPECT_EQ(steps[5].text + "=" + steps[5].value, "coins=-2 left");
    EXPECT_EQ(steps[6].count, 3);
    EXPECT_EQ(steps[7].verb, Verb::shot);
    EXPECT_EQ(steps[7].count, 0);
}

TEST(PlayScript, TellsWhatIsWrongWithALine) {
    EXPECT_EQ(failureOf("wait 1\npres A"), "t:2: there is no step pres; did you mean press?");
    EXPECT_EQ(failureOf("press ANY"), "t:1: no key is called ANY");
    EXPECT_EQ(failureOf("expect txt a"), "t:1: nothing to expect is called txt; did you mean text?");
    EXPECT_EQ(failureOf("expect variable a"), "t:1: expected a value");
    EXPECT_EQ(failureOf("shot a within 256"),
              "t:1: expected how far colours may be off from 0 to 255, found 256");
    EXPECT_EQ(failureOf("wait 99999999999999"),
              "t:1: expected a number of updates from 0 to 1000000, found 99999999999999");
    EXPECT_EQ(failureOf("click 1 2 3"), "t:1: found more than was expected: 3");
}

// What is written down is what is read again.
TEST(RecordedLine, IsReadBack) {
    for (const char* line : {"keydown ESCAPE", "keyup PAD_A", "mouse 4 5", "button right down", "wheel down",
                             "focus lost", "resize 3 4", "close"}) {
        const auto steps = parseRecordedInput(std::string("1 ") + line, "t");
        ASSERT_EQ(steps.size(), 1u);
        EXPECT_EQ(recordedLine(*steps[0].event), line);
    }
    EXPECT_EQ(recordedLine(WindowEvent::keyDown(255)), "");
}

TEST(ToolOptionsTest, StandAnywhereAndAreRefusedWithTheNearest) {
    constexpr ToolOption known[] = {{"--frames", true}, {"--headless"}};
    const auto complaint = [&](const std::vector<std::string>& words) -> std::string {
        try {
            const ToolOptions options(words, known);
            options.number("--frames", 1);
        } catch (const UsageError& error) {
            return error.what();
        }
        return "";
    };
    const std::vector<std::string> words{"--frames", "12", "game", "--headless", "-"};
    const ToolOptions options(words, known);
    EXPECT_EQ(options.number("--frames", 1), 12);
    EXPECT_EQ(options.words(), (std::vector<std::string>{"game", "-"}));
    EXPECT_EQ(complaint({"--frame", "1"}), "unknown option --frame; did you mean --frames?");
    EXPECT_EQ(complaint({"--frames"}), "--frames wants a value");
    EXPECT_EQ(complaint({"--headless", "--headless"}), "--headless is given twice");
    for (const char* bad : {"0", "1x", "", "4294967297"}) EXPECT_NE(complaint({"--frames", bad}), "") << bad;
}

}  // namespace
}  // namespace kelmora
