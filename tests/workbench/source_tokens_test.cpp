#include "workbench/source_tokens.h"

#include <gtest/gtest.h>

#include "script/vesper_script.h"
#include "support/all_scripts.h"
#include "support/capture_host.h"

namespace kelmora {
namespace {

// The text of a token as the interpreter keeps it: one blank for a line break in a string.
std::string joined(std::string_view text) {
    std::string made;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\n') {
            made += text[i];
            continue;
        }
        while (!made.empty() && (made.back() == ' ' || made.back() == '\t')) made.pop_back();
        made += ' ';
        while (i + 1 < text.size() && (text[i + 1] == ' ' || text[i + 1] == '\t')) ++i;
    }
    return made;
}

struct Statement {
    std::uint32_t line = 0;
    std::vector<std::string> tokens;
};

std::vector<Statement> scanned(const std::string& source) {
    std::vector<Statement> found;
    for (const SourceToken& token : scanSource(source)) {
        if (token.kind == SourceTokenKind::Comment) continue;
        if (token.startsStatement) found.push_back({token.line, {}});
        const bool separates = textOf(source, token) == ";" && token.openBrackets == 0;
        if (!separates) found.back().tokens.push_back(joined(textOf(source, token)));
    }
    return found;
}

TEST(SourceTokens, AreThoseOfTheInterpreter) {
    CaptureHost host;
    VesperScript engine(host);
    std::vector<ScriptFile> files = allScripts();
    files.push_back(
        {"signs", "a#2 = x<-1 &&y|| z ~= @q@@ c\n b = a#b; ; c=[1;2] d\n'it''s'\n\"a\n   b\" .5 $f\n"});
    for (const ScriptFile& file : files) {
        BytecodeProgram program;
        try {
            program = engine.compileToBytecode(file.source);
        } catch (const std::exception&) {
            continue;
        }
        const std::vector<Statement> found = scanned(file.source);
        std::size_t at = 0;
        for (const ParsedScriptLine& line : program.lines.linked()) {
            if (line.tokens.empty()) continue;
            ASSERT_LT(at, found.size()) << file.path;
            ASSERT_EQ(found[at].line, line.lineNumber) << file.path;
            ASSERT_EQ(found[at].tokens, line.tokens) << file.path << ':' << line.lineNumber + 1;
            ++at;
        }
        EXPECT_EQ(at, found.size()) << file.path;
    }
}

}  // namespace
}  // namespace kelmora
