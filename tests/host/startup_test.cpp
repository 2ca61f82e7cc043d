#include "host/startup.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/paths.h"
#include "base/whole_file.h"
#include "script/source_path.h"
#include "shim/shim.h"
#include "support/capture_host.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

TEST(Startup, TheBaseDirectoryEndsWithItsSeparator) {
    const char* arguments[] = {"/somewhere/else\\kelmora"};
    const std::string base = findBaseDirectory(1, arguments);
    EXPECT_TRUE(base.ends_with('/'));
    EXPECT_EQ(base.find('\\'), std::string::npos);
    EXPECT_EQ(findBaseDirectory(0, nullptr), base);  // the platform knows it
}

TEST(Startup, SourceDirectoryIsWhatStandsBeforeTheLastSeparator) {
    EXPECT_EQ(sourceDirectoryForPath("a/b\\c.vs"), "a/b");
    EXPECT_EQ(sourceDirectoryForPath("c.vs"), "");
    EXPECT_EQ(sourceDirectoryForPath("/c.vs"), "");
    EXPECT_EQ(sourceDirectoryForPath(""), "");
}

// A game tree in a folder of its own, run by an engine that believes to stand in its bin folder.
class GameTree : public testing::Test {
protected:
    GameTree() {
        for (const char* folder :
             {"bin", "Resources/scripts", "Resources/package/game", "Resources/volatile"})
            std::filesystem::create_directories(root_ / folder);
        runtime_.path = (root_ / "bin/").generic_string();
    }
    void file(const std::string& name, const std::string& content) {
        ASSERT_TRUE(writeWholeFile((root_ / "Resources" / name).string(), content));
    }
    // The failure's text, or nothing.
    std::string run(const std::string& bootSource) {
        try {
            registerFunctions(runtime_);
            image_ = VesperScript::serialiseBytecode(runtime_.engine.compileToBytecode(bootSource, "lua.vs"));
            runEmbeddedStartupScript(runtime_, image_, startupSourcePath(runtime_));
        } catch (const std::exception& error) {
            return error.what();
        }
        return "";
    }

    TemporaryFolder root_;
    std::vector<unsigned char> image_;
    CaptureHost host_;
    Runtime runtime_{host_};
};

TEST_F(GameTree, PathsResolveBesideTheScriptAndInTheTree) {
    file("package/game/main.vs",
         "print(runFile('part.vs'), runFile('scripts/other.vs'), runFile('ast/scripts/other.vs'))");
    file("package/game/part.vs", "return 'beside'");
    file("scripts/other.vs", "return 'in the tree'");
    EXPECT_EQ(run("runFile('package\\\\game\\\\main.vs')"), "");
    EXPECT_EQ(host_.output, "beside\tin the tree\tin the tree\n");
}

TEST_F(GameTree, FunctionsKeepTheirOwnSourceAfterRetargeting) {
    file("package/game/lib.vs", "function fromLib()\n    return runFile('data.vs')\nend\n");
    file("package/game/data.vs", "return 'lib data'");
    file("data.vs", "return 'root data'");
    EXPECT_EQ(run("runFile('package/game/lib.vs')\nfunction fromBoot()\n    return runFile('data.vs')\nend\n"
                  "print(fromLib(), fromBoot())"),
              "");
    EXPECT_EQ(host_.output, "lib data\troot data\n");
}

TEST_F(GameTree, FileHandlesReadWriteAndClose) {
    const std::string path = (root_ / "Resources/volatile/a b.txt").generic_string();
    const std::string source = "f = io['open']('" + path +
                               "', 'w')\nprint(f['write']('one', 2, not, '\\n'), f['write'](f, 'last'))\n" +
                               "f['close'](f)\nf = io['open']('" + path + "')\n" +
                               "print(f['read'](), f['read'](f, '*l'), f['read']())\nf['close']()\n" +
                               "print(pcall(f['read'], f))\nprint(io['open']('missing'), os['remove']('" +
                               path + "'), os['remove']('" + path + "'))";
    EXPECT_EQ(run(source), "");
    EXPECT_EQ(
        host_.output,
        "true\ttrue\none2not\tlast\tnot\nfalse\tfile['read'] requires a valid file handle\nnot\ttrue\tnot\n");
}

TEST_F(GameTree, AWindowLeftOpenIsDestroyed) {
    const ScopedEnvironment video("KELMORA_VIDEO", "memory");
    EXPECT_EQ(
        run("print(Metal['spawnWindow']('Title', 64, 48), Metal['getTitle'](), Metal['checkClose']())\n"
            "image = Plush['createImage'](64, 48, 10, 20, 30, "
            "255)\nMetal['renderImage'](image)\nMetal['forceUpdate']()\n"
            "shown = Metal['getWindow']()\nprint(Plush['getPixel'](shown, 5, 5), Plush['imageSize'](shown))\n"
            "Metal['updateInput']()\nprint(VESPER_MOUSE_X >= 0, VESPER_KEY_A)\n"
            "Plush['killImage'](image)\nPlush['killImage'](shown)"),
        "");
    EXPECT_EQ(host_.output, "true\tTitle\tfalse\n10\t20\t30\t255\t64\t48\ntrue\tfalse\n");
    EXPECT_NE(runtime_.window, nullptr);
    runtime_.destroyWindow();
    EXPECT_EQ(runtime_.window, nullptr);
}

}  // namespace
}  // namespace kelmora
