#include "support/rwby_run.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/capture_host.h"

namespace kelmora {
namespace {

using vesper::ruby::ExecutionMode;

struct Expectation {
    std::string output;
    std::string error;
    std::size_t errorLine = 0;
};

bool takeComment(const std::string& line, const std::string& mark, std::string& text) {
    const std::size_t at = line.find("# " + mark + ":");
    if (at == std::string::npos) return false;
    text = line.substr(at + mark.size() + 3);
    if (text.starts_with(' ')) text.erase(0, 1);
    for (std::size_t tab = 0; (tab = text.find("\\t", tab)) != std::string::npos; ++tab)
        text.replace(tab, 2, "\t");
    return true;
}

Expectation readComments(const std::string& source) {
    Expectation expected;
    std::istringstream lines(source);
    std::string line;
    std::string text;
    for (std::size_t number = 1; std::getline(lines, line); ++number) {
        if (takeComment(line, "expect", text)) expected.output += text + "\n";
        if (takeComment(line, "error", text)) {
            expected.error = text;
            expected.errorLine = number;
        }
    }
    return expected;
}

// Errors read "chunk:line: message", with a column behind the line while compiling.
void expectError(const Expectation& expected, const std::string& error) {
    if (expected.error.empty()) {
        EXPECT_EQ(error, "");
        return;
    }
    const std::string place = "test:" + std::to_string(expected.errorLine) + ":";
    EXPECT_TRUE(error.starts_with(place)) << error << " is not at " << place;
    EXPECT_TRUE(error.ends_with(": " + expected.error)) << error;
}

}  // namespace

RwbyOutcome runRwby(const std::vector<std::string>& sources, RwbyForm form, ExecutionMode mode,
                    std::uint64_t stepLimit) {
    CaptureHost host;
    NativeStack stack;
    vesper::ruby::RubyVM vm(host, stack);
    vm.setExecutionMode(mode);
    vm.setStepLimit(stepLimit);
    RwbyOutcome outcome;
    for (const std::string& source : sources) {
        vesper::ruby::RubyResult result;
        if (form == RwbyForm::Text) {
            result = vm.runScript(source, "test");
        } else {
            const auto compiled = vm.compileScript(source, "test");
            result.error = compiled.error;
            if (compiled.success) result = vm.runBytecode(compiled.bytecode);
        }
        EXPECT_EQ(result.success, result.error.empty());
        if (sources.size() > 1 && !result.success) host.output += "failed: " + result.error + "\n";
        outcome.error = result.error;
    }
    outcome.output = host.output;
    return outcome;
}

void expectRwbyComments(const std::string& source) {
    const Expectation expected = readComments(source);
    ASSERT_FALSE(expected.output.empty() && expected.error.empty()) << "the file expects nothing";
    struct Way {
        const char* name;
        RwbyForm form;
        ExecutionMode mode;
    };
    for (const Way& way : {Way{"from text", RwbyForm::Text, ExecutionMode::Full},
                           Way{"from an image", RwbyForm::Image, ExecutionMode::Full},
                           Way{"without fast forms", RwbyForm::Text, ExecutionMode::WithoutFastForms},
                           Way{"plain instructions", RwbyForm::Image, ExecutionMode::PlainInstructions}}) {
        SCOPED_TRACE(way.name);
        const RwbyOutcome outcome = runRwby({source}, way.form, way.mode);
        EXPECT_EQ(outcome.output, expected.output);
        expectError(expected, outcome.error);
    }
}

}  // namespace kelmora
