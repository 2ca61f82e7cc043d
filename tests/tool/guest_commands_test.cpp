#include <gtest/gtest.h>

#include "base/whole_file.h"
#include "support/places.h"
#include "support/shell.h"
#include "support/temporary_folder.h"

// The authors' tool on sources and images of the guest languages: what it prints, its errors and its exit
// codes.
namespace kelmora {
namespace {

struct Guest {
    const char* extension;
    const char* magic;
    const char* good;     // prints "ran" and 42
    const char* failing;  // fails on its second line
    const char* failure;
    const char* broken;  // does not compile
    const char* complaint;
};

class GuestCommands : public testing::TestWithParam<Guest> {
protected:
    std::string file(const std::string& name, const std::string& content) const {
        const std::string path = (folder_ / name).string();
        EXPECT_TRUE(writeWholeFile(path, content));
        return quoted(path);
    }
    std::string source(const char* content) const {
        return file(std::string("a b") + GetParam().extension, content);
    }
    static ShellOutcome vesper(const std::string& arguments) {
        return runProgram(binFolder() + "/vesper" + (platform_is_windows() ? ".exe" : ""), arguments);
    }
    void expectOutcome(const std::string& arguments, int exitCode, const std::string& text) {
        const ShellOutcome outcome = vesper(arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << arguments << "\n" << outcome.text;
        EXPECT_NE(outcome.text.find(text), std::string::npos) << arguments << "\n" << outcome.text;
    }

    TemporaryFolder folder_;
};

TEST_P(GuestCommands, SourcesAndImagesRunAlike) {
    const std::string good = source(GetParam().good);
    const std::string image = file("out.image", "");
    expectOutcome("run " + good, 0, "ran\t42\n");
    expectOutcome("check " + good, 0, "");
    EXPECT_EQ(vesper("compile " + good + " -o " + image).exitCode, 0);
    const auto bytes = readWholeFileBytes((folder_ / "out.image").string());
    ASSERT_TRUE(bytes && bytes->size() > 8);
    EXPECT_EQ(std::string(bytes->begin(), bytes->begin() + 4), GetParam().magic);
    expectOutcome("run " + image, 0, "ran\t42\n");
    const ShellOutcome dump = vesper("dump " + image);
    EXPECT_EQ(dump.exitCode, 0);
    EXPECT_FALSE(dump.text.empty());
}

TEST_P(GuestCommands, FailuresNameTheirPlaceAndEndWithOne) {
    const std::string failing = source(GetParam().failing);
    expectOutcome("run " + failing, 1, GetParam().failure);
    const std::string image = file("out.image", "");
    EXPECT_EQ(vesper("compile " + failing + " -o " + image).exitCode, 0);
    expectOutcome("run " + image, 1, GetParam().failure);
    const std::string broken = source(GetParam().broken);
    for (const std::string& command :
         {"run " + broken, "check " + broken, "compile " + broken + " -o " + image})
        expectOutcome(command, 1, GetParam().complaint);
    // The image of before stands as it was.
    expectOutcome("run " + image, 1, GetParam().failure);
}

TEST_P(GuestCommands, DamagedImagesAreRefused) {
    const std::string image = file("out.image", "");
    ASSERT_EQ(vesper("compile " + source(GetParam().good) + " -o " + image).exitCode, 0);
    const auto bytes = readWholeFileBytes((folder_ / "out.image").string());
    ASSERT_TRUE(bytes.has_value());
    const std::string whole(bytes->begin(), bytes->end());
    expectOutcome("run " + file("short.image", whole.substr(0, whole.size() / 2)), 1, "bytecode");
    expectOutcome("dump " + file("short.image", whole.substr(0, 10)), 1, "bytecode");
    std::string later = whole;
    later[4] = 9;
    expectOutcome("run " + file("later.image", later), 1, "bytecode version");
}

INSTANTIATE_TEST_SUITE_P(
    Languages, GuestCommands,
    testing::Values(Guest{".lua", "VLBC", "local n = 21\nprint('ran', n * 2)\n", "local x\nx.y = 1\n",
                          "attempt to assign into a nil value", "x = = 1\n", "expected expression"},
                    Guest{".rwby", "VRBC", "n = 21\nprint('ran', n * 2)\n", "x = 1\nx[0] = 1\n",
                          "indexed assignment expects an array, map, or string", "def f(\n",
                          "expected parameter name"}),
    [](const auto& tested) { return std::string(tested.param.extension).substr(1); });

}  // namespace
}  // namespace kelmora
