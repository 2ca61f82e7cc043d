#include <gtest/gtest.h>

#include <filesystem>

#include "platform/environment.h"
#include "support/by_tool.h"

// A game is packed, unpacked by an independent tool, and started as its player would.
namespace kelmora {
namespace {

namespace fs = std::filesystem;

class Packing : public ByTool {
protected:
    Packing() {
        write("inn/Resources/package/graphics.vs", "");
        write("inn/Resources/scripts/visual-novel.vs",
              "Vesper[\"replaceFile\"](Vesper[\"getPath\"]() + \"../Resources/volatile/save2.plush\", \"x = "
              "1\")\n"
              "local file = io[\"open\"](Vesper[\"getPath\"]() + \"../Resources/volatile/save2.plush\", "
              "\"r\")\n"
              "print(\"kept\", file[\"read\"](\"*a\"))\n");
        write("inn/Resources/volatile/save4.plush", "private");
        write("inn/LICENCE", "mine");
    }
    bool unpack(const std::string& archive) const {
        return runInShell("cd " + quoted(folder_.path().string()) +
                          " && mkdir -p out && cd out && cmake -E tar xf ../" + archive)
                   .exitCode == 0;
    }
    static bool has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }
};

TEST_F(Packing, HoldsAllThatAPlayerNeedsAndNothingThatWasKept) {
    if (platform_is_windows()) GTEST_SKIP() << "the Linux program is not beside this tool";
    expectOutcome("package inn linux", 0, "inn-linux.tar.gz: ");
    const std::string first = read("inn-linux.tar.gz");
    EXPECT_EQ(vesper("package inn linux").exitCode, 0);
    EXPECT_EQ(read("inn-linux.tar.gz"), first);
    ASSERT_TRUE(unpack("inn-linux.tar.gz"));
    EXPECT_EQ(read("out/inn/Resources/packed.txt"), "inn\n");
    EXPECT_EQ(read("out/inn/Licences/LICENCE"), "mine");
    EXPECT_TRUE(has(read("out/inn/README.txt"), "Start inn."));
    EXPECT_TRUE(fs::exists(pathOf("out/inn/icon.png")));
    EXPECT_FALSE(fs::exists(pathOf("out/inn/Resources/volatile/save4.plush")));
    const ShellOutcome played = runProgram(pathOf("out/inn/inn"));
    EXPECT_EQ(played.text, "kept\tx = 1\n");
    EXPECT_EQ(read("out/inn/Resources/volatile/save2.plush"), "x = 1");
}

TEST_F(Packing, KeepsSavesWithTheUserWhereTheGameCannot) {
    if (platform_is_windows()) GTEST_SKIP() << "the Linux program is not beside this tool";
    ASSERT_EQ(vesper("package inn linux").exitCode, 0);
    ASSERT_TRUE(unpack("inn-linux.tar.gz"));
    // Even the administrator cannot write into a folder that is a file.
    write("out/inn/Resources/volatile", "");
    setEnvironment("XDG_DATA_HOME", pathOf("data").c_str());
    const ShellOutcome played = runProgram(pathOf("out/inn/inn"));
    setEnvironment("XDG_DATA_HOME", nullptr);
    EXPECT_EQ(played.text, "kept\tx = 1\n");
    EXPECT_EQ(read("data/inn/save2.plush"), "x = 1");
}

TEST_F(Packing, MakesAZipAndSaysWhatIsMissing) {
    write("any.exe", "MZ");
    expectOutcome("package inn windows --windows-program any.exe", 0, "inn-windows.zip: ");
    // Under Wine there is nothing that unpacks; the same bytes are unpacked on Linux.
    if (!platform_is_windows()) {
        ASSERT_TRUE(unpack("inn-windows.zip"));
        EXPECT_EQ(read("out/inn/bin/Kelmora.exe"), "MZ");
        EXPECT_TRUE(has(read("out/inn/inn.cmd"), "bin\\Kelmora.exe"));
        EXPECT_EQ(read("out/inn/icon.ico").substr(0, 6), std::string("\0\0\1\0\1\0", 6));
    }
    expectOutcome("package inn widows", 2, "did you mean windows?");
    expectOutcome("package inn linux --linux-program none", 2, "there is no program none");
    expectOutcome("package", 2, "package wants a game's folder");
    expectOutcome("package inn --out nowhere", 2, "there is no folder nowhere");
}

}  // namespace
}  // namespace kelmora
