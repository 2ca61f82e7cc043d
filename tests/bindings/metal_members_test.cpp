#include <gtest/gtest.h>

#include <string>

#include "base/whole_file.h"
#include "host/registration.h"
#include "platform/memory_window.h"
#include "support/capture_host.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

// Runs a script in front of a recorded player and gives what it printed.
std::string played(const std::string& recording, const std::string& script) {
    const TemporaryFolder folder;
    const std::string input = (folder / "input.txt").string();
    EXPECT_TRUE(writeWholeFile(input, recording));
    const ScopedEnvironment video("KELMORA_VIDEO", "memory");
    const ScopedEnvironment recorded("KELMORA_INPUT", input.c_str());
    CaptureHost host;
    Runtime runtime(host);
    registerFunctions(runtime);
    runtime.engine.runScript("Metal[\"spawnWindow\"](\"Test\", 8, 8)\n" + script);
    return host.output;
}

TEST(MetalMembers, APressBetweenTwoFramesIsSeen) {
    EXPECT_EQ(played("1 keydown ESCAPE\n1 keyup ESCAPE\n"
                     "1 button left down\n1 button left up\n"
                     "1 wheel up\n1 keydown PAD_A\n",
                     "Metal[\"forceUpdate\"]()\n"
                     "Metal[\"updateInput\"]()\n"
                     "print(VESPER_KEY_ESCAPE, VESPER_MOUSE_1, VESPER_PAD_A, VESPER_WHEEL)\n"
                     "print(Metal[\"presses\"]())\n"
                     "print(Metal[\"presses\"]())\n"
                     "Metal[\"updateInput\"]()\n"
                     "print(VESPER_WHEEL)\n"),
              "false\tfalse\ttrue\t1\n[escape, mouse_left, wheel_up, pad_a]\n[]\n0\n");
}

TEST(MetalMembers, KeysBesideTheSettledOnesAreGlobals) {
    EXPECT_EQ(played("1 keydown PAGE_DOWN\n1 keydown F5\n1 keydown PAD_LEFT\n2 focus lost\n",
                     "for i = 1, 2\n"
                     "    Metal[\"forceUpdate\"]()\n"
                     "    Metal[\"updateInput\"]()\n"
                     "    print(VESPER_KEY_PAGE_DOWN, VESPER_KEY_F5, VESPER_PAD_LEFT, VESPER_KEY_TAB)\n"
                     "end\n"),
              "true\ttrue\ttrue\tfalse\nfalse\tfalse\tfalse\tfalse\n");
}

TEST(MetalMembers, ScriptsChooseFullScreenAndScaling) {
    EXPECT_EQ(played("2 keydown F11\n",
                     "Metal[\"setScaling\"](\"smooth\")\n"
                     "Metal[\"setFullscreen\"](true)\n"
                     "Metal[\"forceUpdate\"]()\n"
                     "print(Metal[\"isFullscreen\"](), Plush[\"imageSize\"](Metal[\"getWindow\"]()))\n"
                     "Metal[\"forceUpdate\"]()\n"
                     "print(Metal[\"isFullscreen\"](), Plush[\"imageSize\"](Metal[\"getWindow\"]()))\n"
                     "print(pcall(Metal[\"setScaling\"], \"blurred\"))\n"
                     "print(pcall(Metal[\"setFullscreen\"]))\n"
                     "Metal[\"killWindow\"]()\n"
                     "Metal[\"setFullscreen\"](true)\n"
                     "Metal[\"setScaling\"](\"whole\")\n"
                     "print(Metal[\"isFullscreen\"]())\n"),
              "true\t1920\t1080\nfalse\t8\t8\n"
              "false\tMetal.setScaling: mode must be nearest, smooth, or whole\n"
              "false\tMetal.setFullscreen: missing argument 1\nfalse\n");
}

TEST(MetalMembers, TextGoesToTheClipboardOfTheWindow) {
    const ScopedEnvironment video("KELMORA_VIDEO", "memory");
    CaptureHost host;
    Runtime runtime(host);
    registerFunctions(runtime);
    runtime.engine.runScript(
        "print(Metal[\"copyText\"](\"nowhere\"))\n"
        "Metal[\"spawnWindow\"](\"Test\", 8, 8)\n"
        "print(Metal[\"copyText\"](\"“Dunkel.”\\nMaud\"))\n"
        "print(pcall(Metal[\"copyText\"]))\nprint(pcall(Metal[\"speak\"], 5))\n");
    EXPECT_EQ(host.output,
              "false\ntrue\nfalse\tMetal.copyText: missing argument 1\n"
              "false\tMetal.speak: text must be a string\n");
    ASSERT_NE(memoryWindowOf(runtime.window), nullptr);
    EXPECT_EQ(memoryWindowOf(runtime.window)->copiedText(), "“Dunkel.”\nMaud");
}

TEST(MetalMembers, WithoutAWindowNothingIsPressed) {
    CaptureHost host;
    Runtime runtime(host);
    registerFunctions(runtime);
    runtime.engine.runScript(
        "Metal[\"updateInput\"]()\nprint(Metal[\"presses\"](), VESPER_KEY_ESCAPE, VESPER_WHEEL)\n");
    EXPECT_EQ(host.output, "[]\tfalse\t0\n");
}

}  // namespace
}  // namespace kelmora
