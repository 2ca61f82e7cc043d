#include <gtest/gtest.h>

#include "base/whole_file.h"
#include "support/script_run.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

// The game is closed while its jobs run: they end, and so does it.
TEST(AIJobsOfAGame, RunToTheirEndWhenItCloses) {
    const TemporaryFolder folder;
    const std::string text = (folder / "text").generic_string();
    ASSERT_TRUE(writeWholeFile(text, std::string(200000, 'a') + "b"));
    std::string source;
    for (int i = 0; i < 8; ++i)
        source += "AI[\"generateAsync\"](not, \"" + text + "\", true, not, not, true, \"" +
                  (folder / ("model" + std::to_string(i))).generic_string() + "\", not, not, 1)\n";
    runTestScript(source, "closing.vs", ScriptWay::Text);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(readWholeFile((folder / ("model" + std::to_string(i))).string()), "a|a:199999,b:1\nb|a:1");
}

}  // namespace
}  // namespace kelmora
