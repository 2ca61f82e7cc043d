#include <gtest/gtest.h>

#include "base/whole_file.h"
#include "support/places.h"
#include "support/shell.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

// The debugger with a real client, which talks to it as an editor does.
TEST(DapClient, BreaksStepsEvaluatesPausesAndLeaves) {
    const std::string client = sourceFolder() + "/tests/tool/dap_client";
    if (platform_is_windows() ||
        runInShell("cd " + quoted(client) +
                   " && node -e \"require('@vscode/debugadapter-testsupport')\" 2>&1")
                .exitCode != 0)
        GTEST_SKIP() << "the client is not installed: tools/setup test brings it where there is npm";
    const TemporaryFolder folder;
    const std::string script = (folder / "area.vs").string();
    ASSERT_TRUE(writeWholeFile(script,
                               "function area(width, height)\n"
                               "    local product = width * height\n"
                               "    return product\n"
                               "end\n"
                               "goesOn = true\n"
                               "total = area(4, 5)\n"
                               "print(total)\n"
                               "while goesOn\n"
                               "    total += 1\n"
                               "end\n"));
    const ShellOutcome outcome = runInShell("cd " + quoted(client) + " && node session.js " +
                                            quoted(binFolder() + "/vesper") + " " + quoted(script) + " 2>&1");
    EXPECT_EQ(outcome.text,
              "stopped in area:3, (script):6\n"
              "Locals: product = 20\n"
              "Parameters: height = 5, width = 4\n"
              "total * 2 is 40\n"
              "paused by pause\n"
              "printed \"20\\n\"\n");
    EXPECT_EQ(outcome.exitCode, 0);
}

}  // namespace
}  // namespace kelmora
