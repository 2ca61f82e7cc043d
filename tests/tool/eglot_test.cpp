#include <gtest/gtest.h>

#include <filesystem>

#include "base/whole_file.h"
#include "support/places.h"
#include "support/shell.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

// The language server with a real client.
TEST(Eglot, OpensErrsCompletesRenamesAndFormats) {
    const std::string emacs =
        "emacs --batch -q --eval \"(progn (require 'package) (package-initialize) (require 'eglot))\"";
    if (platform_is_windows() || runInShell(emacs + " 2>&1").exitCode != 0)
        GTEST_SKIP() << "Emacs with Eglot is not installed: tools/setup test brings it";
    const TemporaryFolder game;
    std::filesystem::create_directories(game / "Resources/package");
    ASSERT_TRUE(writeWholeFile((game / "Resources/package/graphics.vs").string(),
                               "function greet(who)\n    print(who)\nend\n"));
    ASSERT_TRUE(writeWholeFile((game / "Resources/package/inn.vs").string(), "greet(\"é\")\n"));
    const ShellOutcome outcome = runInShell(
        "cd " + quoted(game.path().string()) + " && emacs --batch -q -l " +
        quoted(sourceFolder() + "/tests/tool/eglot_session.el") + " " + quoted(sourceFolder()) + " " +
        quoted(binFolder() + "/vesper") + " " + quoted(game.path().string()) + " 2>errors.txt");
    EXPECT_EQ(outcome.text,
              "mode vesper-mode\n"
              "opened, faults nil\n"
              "erred: (vesper: prnt is never set; did you mean `print`?)\n"
              "mended, faults nil\n"
              "completed: Plush[\"killImage\n"
              "renamed: welcome(\"é\")\n"
              "and there: function welcome(who)\n"
              "formatted: if 1\n"
              "formatted:     welcome(\"é\")\n"
              "left\n")
        << readWholeFile((game / "errors.txt").string()).value_or("");
    EXPECT_EQ(outcome.exitCode, 0);
}

}  // namespace
}  // namespace kelmora
