#include "support/guest_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "lua/lua_vm.h"
#include "support/capture_host.h"
#include "support/rwby_run.h"

namespace kelmora {
namespace {

struct GuestExpectation {
    std::vector<std::string> output;
    std::string error;
    std::size_t errorLine = 0;  // from 1

    bool isEmpty() const { return output.empty() && error.empty(); }
};

std::string unescape(std::string text) {
    for (std::size_t at = 0; (at = text.find("\\t", at)) != std::string::npos; ++at)
        text.replace(at, 2, "\t");
    return text;
}

bool takeComment(const std::string& line, const std::string& mark, std::string& text) {
    const std::size_t at = line.find(mark);
    if (at == std::string::npos) return false;
    text = line.substr(at + mark.size());
    if (text.starts_with(' ')) text.erase(0, 1);
    text = unescape(text);
    return true;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// "chunk:line: message" and "chunk:line:column: message" without their places.
std::string messageOf(const std::string& error, const std::string& chunkName, std::size_t& line) {
    line = 0;
    if (!error.starts_with(chunkName + ":")) return error;
    std::size_t at = chunkName.size() + 1;
    std::size_t digits = 0;
    line = std::stoul(error.substr(at), &digits);
    at += digits;
    if (error[at] == ':' && std::isdigit(static_cast<unsigned char>(error[at + 1])) != 0) {
        std::stoul(error.substr(at + 1), &digits);
        at += digits + 1;
    }
    return error.substr(at + 2);
}

GuestExpectation readGuestExpectation(const std::string& source, const std::string& comment) {
    GuestExpectation expectation;
    std::string text;
    const std::vector<std::string> lines = linesOf(source);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (takeComment(lines[i], comment + " expect:", text)) expectation.output.push_back(text);
        if (takeComment(lines[i], comment + " error:", text)) {
            expectation.error = text;
            expectation.errorLine = i + 1;
        }
    }
    return expectation;
}

// The programs of a source, which keep their line numbers.
std::vector<std::string> splitPrograms(const std::string& source, const std::string& comment) {
    std::vector<std::string> programs(1);
    std::string blank;
    for (const std::string& line : linesOf(source)) {
        if (line.starts_with(comment + " ---")) programs.push_back(blank);
        programs.back() += line + "\n";
        blank += "\n";
    }
    if (programs.size() > 1) programs.erase(programs.begin());
    return programs;
}

GuestOutcome runLua(const std::function<vesper::lua::LuaResult(vesper::lua::LuaVM&)>& run) {
    CaptureHost host;
    NativeStack stack;
    stack.markBase();
    vesper::lua::LuaVM machine(host, stack);
    const vesper::lua::LuaResult result = run(machine);
    return {host.output, result.success ? "" : result.error};
}

}  // namespace

GuestLanguage luaLanguage() {
    const auto asText = [](const std::string& source, const std::string& name) {
        return runLua([&](vesper::lua::LuaVM& machine) { return machine.runScriptString(source, name); });
    };
    const auto asImage = [](const std::string& source, const std::string& name) {
        return runLua([&](vesper::lua::LuaVM& machine) {
            try {
                return runLuaBytecode(machine, machine.compileScript(source, name));
            } catch (const std::exception& error) {
                return vesper::lua::LuaResult{false, error.what(), {}, {}};
            }
        });
    };
    const auto withFreshFrames = [](const std::string& source, const std::string& name) {
        return runLua([&](vesper::lua::LuaVM& machine) {
            machine.setFramesAlwaysFresh(true);
            return machine.runScriptString(source, name);
        });
    };
    return {
        ".lua", "--", {{"as text", asText}, {"as an image", asImage}, {"in fresh frames", withFreshFrames}}};
}

GuestLanguage rwbyLanguage() {
    using vesper::ruby::ExecutionMode;
    const auto way = [](RwbyForm form, ExecutionMode mode) {
        return [form, mode](const std::string& source, const std::string& name) {
            return runRwby({source}, form, mode, 0, name);
        };
    };
    return {".rwby",
            "#",
            {{"as text", way(RwbyForm::Text, ExecutionMode::Full)},
             {"as an image", way(RwbyForm::Image, ExecutionMode::Full)},
             {"without fast forms", way(RwbyForm::Text, ExecutionMode::WithoutFastForms)},
             {"as plain instructions", way(RwbyForm::Image, ExecutionMode::PlainInstructions)}}};
}

void expectGuestRuns(const GuestLanguage& language, const std::string& source, const std::string& chunkName) {
    for (const std::string& program : splitPrograms(source, language.comment)) {
        SCOPED_TRACE(program.substr(std::min(program.find_first_not_of('\n'), program.size())));
        const GuestExpectation expected = readGuestExpectation(program, language.comment);
        ASSERT_FALSE(expected.isEmpty()) << "the program expects nothing";
        for (const GuestWay& way : language.ways) {
            SCOPED_TRACE(way.name);
            const GuestOutcome outcome = way.run(program, chunkName);
            EXPECT_EQ(linesOf(outcome.output), expected.output);
            std::size_t line = 0;
            EXPECT_EQ(messageOf(outcome.error, chunkName, line), expected.error) << outcome.error;
            if (line != 0) {
                EXPECT_EQ(line, expected.errorLine) << outcome.error;
            }
        }
    }
}

}  // namespace kelmora
