#include "support/script_run.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "base/whole_file.h"
#include "host/boot_image.h"
#include "host/startup.h"
#include "image/image_registry.h"
#include "support/capture_host.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

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

}  // namespace

ScriptExpectation readScriptExpectation(const std::string& source) {
    ScriptExpectation expectation;
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

void runAsGame(Runtime& runtime, const std::string& source) {
    const TemporaryFolder root;
    for (const char* folder :
         {"bin", "Resources/scripts", "Resources/package", "Resources/volatile", "Libraries"})
        std::filesystem::create_directories(root / folder);
    EXPECT_TRUE(writeWholeFile((root / "Resources/package/graphics.vs").string(), "graphicsRan = true\n"));
    EXPECT_TRUE(writeWholeFile((root / "Resources/scripts/visual-novel.vs").string(), source));
    runtime.path = (root / "bin/").generic_string();
    runEmbeddedStartupScript(runtime, bootImage(), startupSourcePath(runtime));
}

ScriptOutcome runTestScript(const std::string& source, const std::string& path, ScriptWay way) {
    // Sounds play where nobody hears them, and their time stands still.
    setEnvironment("KELMORA_AUDIO", "memory");
    CaptureHost host;
    Runtime runtime(host);
    ScriptOutcome outcome;
    try {
        registerFunctions(runtime);
        if (way == ScriptWay::Game) {
            runAsGame(runtime, source);
        } else if (way == ScriptWay::Direct) {
            runtime.engine.executeBlock(source);
        } else {
            BytecodeProgram program = runtime.engine.compileToBytecode(source, path);
            if (way == ScriptWay::Image)
                program = VesperScript::deserialiseBytecode(VesperScript::serialiseBytecode(program), path);
            runtime.engine.runBytecode(program);
        }
    } catch (const std::exception& error) {
        outcome.error = error.what();
    }
    // Scripts own their images until they kill them.
    while (!livePlushImages.empty()) killPlushImage(*livePlushImages.begin());
    // Reports name the file without its folder.
    const std::string name = std::filesystem::path(path).filename().string();
    for (std::size_t at = 0; (at = host.output.find(path, at)) != std::string::npos; at += name.size())
        host.output.replace(at, path.size(), name);
    std::istringstream lines(host.output);
    for (std::string line; std::getline(lines, line);) outcome.output.push_back(line);
    return outcome;
}

std::string scriptErrorMessage(const std::string& error, std::size_t& line) {
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

void expectScriptOutcome(const ScriptExpectation& expected, const ScriptOutcome& outcome, const char* phase) {
    SCOPED_TRACE(phase);
    EXPECT_EQ(outcome.output, expected.output);
    std::size_t line = 0;
    EXPECT_EQ(scriptErrorMessage(outcome.error, line), expected.error) << outcome.error;
    if (line != 0) {
        EXPECT_EQ(line, expected.errorLine) << outcome.error;
    }
}

}  // namespace kelmora
