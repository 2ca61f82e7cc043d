#include "platform/recorded_input.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kelmora {
namespace {

std::string complaintAbout(const char* text) {
    try {
        parseRecordedInput(text, "walk.txt");
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no complaint";
}

TEST(RecordedInput, ReadsEveryAction) {
    const auto steps = parseRecordedInput(
        "1 keydown MINUS\n1 keyup A\n2\tmouse -5 100 \n2 button middle down\n3 button middle up\n"
        "3 focus lost\n4 focus gained\n5 resize 80 60\n6 shot a/b.png\n7 close\n",
        "walk.txt");
    using Kind = WindowEvent::Kind;
    const Kind kinds[] = {Kind::keyDown,  Kind::keyUp,     Kind::mouseMoved,  Kind::buttonDown,
                          Kind::buttonUp, Kind::focusLost, Kind::focusGained, Kind::resized};
    ASSERT_EQ(steps.size(), 10u);
    for (std::size_t i = 0; i < std::size(kinds); ++i) {
        ASSERT_TRUE(steps[i].event) << i;
        EXPECT_EQ(steps[i].event->kind, kinds[i]) << i;
        EXPECT_EQ(steps[i].line, static_cast<int>(i) + 1);
    }
    EXPECT_EQ(steps[0].event->keyCode, 189);
    EXPECT_EQ(steps[3].event->x, -5);  // buttons act where the mouse was last
    EXPECT_EQ(steps[3].event->y, 100);
    EXPECT_EQ(steps[3].event->button, MouseButton::middle);
    EXPECT_EQ(steps[7].event->x, 80);
    EXPECT_FALSE(steps[8].event);
    EXPECT_EQ(steps[8].shotPath, "a/b.png");
    EXPECT_EQ(steps[9].update, 7);
    EXPECT_TRUE(parseRecordedInput("", "x").empty());
}

TEST(RecordedInput, BadLinesAreNamedWithTheirTextAndWhatWasExpected) {
    EXPECT_EQ(
        complaintAbout("# start\n30 keydwn RIGHT\n"),
        "walk.txt, line 2: found \"keydwn\", expected keydown, keyup, mouse, button, wheel, focus, resize, "
        "close, type or shot in \"30 keydwn RIGHT\"");
    EXPECT_EQ(complaintAbout("1 keydown right"),
              "walk.txt, line 1: found \"right\", expected the name of a key in \"1 keydown right\"");
    EXPECT_EQ(complaintAbout("1 close\n0 close"),
              "walk.txt, line 2: found \"0\", expected the number of an update, 1 or more in \"0 close\"");
    EXPECT_EQ(complaintAbout("9 close\n8 close"),
              "walk.txt, line 2: found \"8\", expected the number of an update, 9 or more in \"8 close\"");
    EXPECT_EQ(complaintAbout("3 mouse 4"),
              "walk.txt, line 1: found the end of the line, expected a position in \"3 mouse 4\"");
    for (const char* text :
         {"x close", "1x close", "99999999999 close", "1", "1 close now", "1 shot", "1 button top down",
          "1 button left", "1 focus on", "1 resize 0 5", "1 resize 20000 5", "1 mouse 1 2.5", "1 keydown"})
        EXPECT_NE(complaintAbout(text), "no complaint") << text;
}

}  // namespace
}  // namespace kelmora
