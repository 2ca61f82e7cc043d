#include <gtest/gtest.h>

#include <filesystem>

#include "codec/png.h"
#include "platform/environment.h"
#include "support/by_tool.h"

// Where a failure is shown: to an author, and to a player of a packed game.
namespace kelmora {
namespace {

namespace fs = std::filesystem;

class FailurePage : public ByTool {
protected:
    FailurePage() {
        setEnvironment("KELMORA_VIDEO", "memory");
        setEnvironment("KELMORA_AUDIO", "memory");
        write("g/Resources/package/graphics.vs", "");
        write("g/Resources/scripts/visual-novel.vs",
              "Metal[\"spawnWindow\"](\"The inn\", 320, 200)\nMetal[\"forceUpdate\"]()\nlight(1)\n");
    }
    ~FailurePage() override {
        for (const char* name : {"KELMORA_VIDEO", "KELMORA_AUDIO", "KELMORA_INPUT", "KELMORA_SHOTS"})
            setEnvironment(name, nullptr);
    }

    ShellOutcome kelmora(const std::string& input) const {
        const std::string name = platform_is_windows() ? "Kelmora.exe" : "kelmora";
        fs::create_directories(pathOf("g/bin"));
        fs::create_directories(pathOf("g/Resources/volatile"));
        fs::copy_file(binFolder() + "/" + name, pathOf("g/bin/" + name),
                      fs::copy_options::overwrite_existing);
        write("input.txt", input);
        setEnvironment("KELMORA_INPUT", pathOf("input.txt").c_str());
        setEnvironment("KELMORA_SHOTS", folder_.path().string().c_str());
        return runProgram(pathOf("g/bin/" + name));
    }
    // The colour at the top left, where a page has its bar.
    std::string barOf(const std::string& name) const {
        vh::png::Image image;
        if (!vh::png::load_file(pathOf(name).c_str(), image)) return "none";
        return std::to_string(image.pixels[0]) + " " + std::to_string(image.pixels[1]) + " " +
               std::to_string(image.pixels[2]);
    }
    static bool has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }
    static constexpr const char* alarm = "120 38 44";
    static constexpr const char* calm = "44 62 88";
};

TEST_F(FailurePage, AnAuthorReadsItAndStartsTheMendedGameAnew) {
    write("input.txt", "4 shot one.png\n6 keydown R\n6 keyup R\n10 shot two.png\n12 keydown ESCAPE\n");
    const ShellOutcome outcome = vesper("play g --input input.txt");
    EXPECT_EQ(outcome.exitCode, 1);
    const std::size_t first = outcome.text.find("Attempted to call");
    EXPECT_NE(outcome.text.find("Attempted to call", first + 1), std::string::npos) << outcome.text;
    EXPECT_TRUE(has(outcome.text, "    light(1)\n    ^~~~~\n  `light` is nothing here")) << outcome.text;
    EXPECT_EQ(barOf("one.png"), alarm);
    EXPECT_EQ(barOf("two.png"), alarm);
    // A window too small to read in was made larger.
    vh::png::Image image;
    ASSERT_TRUE(vh::png::load_file(pathOf("one.png").c_str(), image));
    EXPECT_EQ(image.width, 960u);
    EXPECT_FALSE(has(vesper("play g --headless").text, "cannot be shown"));
}

TEST_F(FailurePage, KelmoraTellsAnAuthorAllAndAPlayerCalmly) {
    ShellOutcome outcome = kelmora("3 shot author.png\n4 keydown ESCAPE\n");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.text.starts_with("Kelmora startup error: Attempted to call")) << outcome.text;
    EXPECT_EQ(barOf("author.png"), alarm);
    EXPECT_FALSE(fs::exists(pathOf("g/Resources/volatile/error.txt")));

    write("g/Resources/packed.txt", "g\n");
    write("g/Resources/volatile/novel-auto.save", "");
    outcome = kelmora("3 shot player.png\n4 keydown ESCAPE\n");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.text.starts_with("Kelmora startup error: Attempted to call")) << outcome.text;
    EXPECT_EQ(barOf("player.png"), calm);
    const std::string kept = read("g/Resources/volatile/error.txt");
    EXPECT_TRUE(has(kept, "Attempted to call a non-function value of type not\n  at ")) << kept;
    EXPECT_TRUE(has(kept, "    light(1)\n")) << kept;
}

TEST_F(FailurePage, IsLeftWhereNobodySeesIt) {
    EXPECT_EQ(kelmora("").exitCode, 1);
}

}  // namespace
}  // namespace kelmora
