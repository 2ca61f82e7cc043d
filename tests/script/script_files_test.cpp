#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "base/whole_file.h"
#include "host/boot_image.h"
#include "host/runtime.h"
#include "host/startup.h"
#include "plush/live_images.h"
#include "support/capture_host.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

// Runs every file of tests/scripts/. What a script is expected to do stands beside the line that does it:
//     print(1 + 1)    @@ expect: 2
//     x = 1 / 0       @@ error: Division by zero
// Output lines are compared with the `expect` comments in the order of the file; `\t` in a comment is a tab.
// An `error` comment says how the run ends, and for reports with a place also on which line.
// Each file runs as text on the bytecode executor, as an image written and read back, and on the direct
// executor, unless the file holds a line `@@ direct: no` with the reason behind it. Files of
// tests/scripts/boot/ run once, as the game that the boot script starts.
namespace kelmora {
namespace {

struct Expectation {
    std::vector<std::string> output;
    std::string error;
    std::size_t errorLine = 0;  // from 1
    bool direct = true;
};

struct Outcome {
    std::vector<std::string> output;
    std::string error;
};

std::string unescape(std::string text) {
    for (std::size_t at = 0; (at = text.find("\\t", at)) != std::string::npos; ++at)
        text.replace(at, 2, "\t");
    return text;
}

bool takeComment(const std::string& line, const std::string& mark, std::string& text) {
    const std::size_t at = line.find("@@ " + mark + ":");
    if (at == std::string::npos) return false;
    text = line.substr(at + mark.size() + 4);
    if (text.starts_with(' ')) text.erase(0, 1);
    return true;
}

Expectation readExpectation(const std::string& source) {
    Expectation expectation;
    std::istringstream lines(source);
    std::string line;
    std::string text;
    for (std::size_t number = 1; std::getline(lines, line); ++number) {
        if (takeComment(line, "expect", text)) expectation.output.push_back(unescape(text));
        if (takeComment(line, "error", text)) {
            expectation.error = unescape(text);
            expectation.errorLine = number;
        }
        if (takeComment(line, "direct", text)) expectation.direct = !text.starts_with("no");
    }
    return expectation;
}

enum class Way { Text, Image, Direct, Game };

// Stages a game whose start script is the source, and runs the boot script over it.
void runAsGame(Runtime& runtime, const std::string& source) {
    const TemporaryFolder root;
    for (const char* folder :
         {"bin", "Resources/scripts", "Resources/package", "Resources/volatile", "Libraries"})
        std::filesystem::create_directories(root / folder);
    writeWholeFile((root / "Resources/package/graphics.vs").string(), "graphicsRan = true\n");
    writeWholeFile((root / "Resources/scripts/visual-novel.vs").string(), source);
    runtime.path = (root / "bin/").generic_string();
    runEmbeddedStartupScript(runtime, bootImage(), startupSourcePath(runtime));
}

Outcome runOnce(const std::string& source, const std::string& path, Way way) {
    // Sounds play where nobody hears them, and their time stands still.
    setEnvironment("KELMORA_AUDIO", "memory");
    CaptureHost host;
    Runtime runtime(host);
    Outcome outcome;
    try {
        registerFunctions(runtime);
        if (way == Way::Game) {
            runAsGame(runtime, source);
        } else if (way == Way::Direct) {
            runtime.engine.executeBlock(source);
        } else {
            BytecodeProgram program = runtime.engine.compileToBytecode(source, path);
            if (way == Way::Image)
                program = VesperScript::deserialiseBytecode(VesperScript::serialiseBytecode(program), path);
            runtime.engine.runBytecode(program);
        }
    } catch (const std::exception& error) {
        outcome.error = error.what();
    }
    // Scripts own their images until they kill them.
    while (!livePlushImages.empty()) killPlushImage(*livePlushImages.begin());
    // Reports name the file without its folder.
    for (std::size_t at = 0; (at = host.output.find(path)) != std::string::npos;)
        host.output.replace(at, path.size(), std::filesystem::path(path).filename().string());
    std::istringstream lines(host.output);
    for (std::string line; std::getline(lines, line);) outcome.output.push_back(line);
    return outcome;
}

// The message of a report with a place, and the line it points at; else the bare text.
std::string messageOf(const std::string& error, std::size_t& line) {
    constexpr std::string_view mark = "VesperScript error: ";
    if (!error.starts_with(mark)) return error;
    const std::size_t end = error.find('\n');
    const std::string place = error.substr(end + 1, error.find('\n', end + 1) - end - 1);
    const std::size_t number = place.find_first_of(
        "0123456789", place.find_last_of(':') != std::string::npos && place.find(".vs:") != std::string::npos
                          ? place.find(".vs:") + 4
                          : 0);
    line = number == std::string::npos ? 0 : std::stoul(place.substr(number));
    return error.substr(mark.size(), end - mark.size());
}

void expectOutcome(const Expectation& expected, const Outcome& outcome, const char* phase) {
    SCOPED_TRACE(phase);
    EXPECT_EQ(outcome.output, expected.output);
    std::size_t line = 0;
    EXPECT_EQ(messageOf(outcome.error, line), expected.error) << outcome.error;
    if (line != 0) {
        EXPECT_EQ(line, expected.errorLine) << outcome.error;
    }
}

class ScriptFileTest : public testing::Test {
public:
    explicit ScriptFileTest(std::filesystem::path path) : path_(std::move(path)) {}

    void TestBody() override {
        const auto source = readWholeFile(path_.string());
        ASSERT_TRUE(source.has_value());
        const Expectation expected = readExpectation(*source);
        ASSERT_FALSE(expected.output.empty() && expected.error.empty()) << "the file expects nothing";
        if (path_.parent_path().filename() == "boot") {
            expectOutcome(expected, runOnce(*source, path_.generic_string(), Way::Game), "as a game");
            return;
        }
        expectOutcome(expected, runOnce(*source, path_.generic_string(), Way::Text), "bytecode, from text");
        expectOutcome(expected, runOnce(*source, path_.generic_string(), Way::Image),
                      "bytecode, from an image");
        if (expected.direct)
            expectOutcome(expected, runOnce(*source, path_.generic_string(), Way::Direct), "direct executor");
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
    const std::filesystem::path root = std::filesystem::path(KELMORA_SOURCE_DIR) / "tests/scripts";
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
