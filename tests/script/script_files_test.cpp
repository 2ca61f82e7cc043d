#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "base/whole_file.h"
#include "support/places.h"
#include "support/script_run.h"

// Runs every file of tests/scripts/ as text, as an image and on the direct executor, unless the file holds a
// line
// `@@ direct: no` with the reason behind it. Files of tests/scripts/boot/ run once, as the game that the boot
// script starts.
namespace kelmora {
namespace {

class ScriptFileTest : public testing::Test {
public:
    explicit ScriptFileTest(std::filesystem::path path) : path_(std::move(path)) {}

    void TestBody() override {
        const auto source = readWholeFile(path_.string());
        ASSERT_TRUE(source.has_value());
        const ScriptExpectation expected = readScriptExpectation(*source);
        ASSERT_FALSE(expected.isEmpty()) << "the file expects nothing";
        if (path_.parent_path().filename() == "boot") {
            expectScriptOutcome(expected, runTestScript(*source, path_.generic_string(), ScriptWay::Game),
                                "as a game");
            return;
        }
        expectScriptOutcome(expected, runTestScript(*source, path_.generic_string(), ScriptWay::Text),
                            "bytecode, from text");
        expectScriptOutcome(expected, runTestScript(*source, path_.generic_string(), ScriptWay::Image),
                            "bytecode, from an image");
        if (expected.direct)
            expectScriptOutcome(expected, runTestScript(*source, path_.generic_string(), ScriptWay::Direct),
                                "direct executor");
    }

private:
    std::filesystem::path path_;
};

std::string testName(const std::filesystem::path& path, const std::filesystem::path& root) {
    std::string name = std::filesystem::relative(path, root).replace_extension().generic_string();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; },
        '_');
    return name;
}

const bool registered = [] {
    const std::filesystem::path root = std::filesystem::path(sourceFolder()) / "tests/scripts";
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
        if (entry.path().extension() == ".vs") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& path : files)
        testing::RegisterTest("Scripts", testName(path, root).c_str(), nullptr, nullptr, __FILE__, __LINE__,
                              [path]() -> ScriptFileTest* { return new ScriptFileTest(path); });
    return true;
}();

}  // namespace
}  // namespace kelmora
