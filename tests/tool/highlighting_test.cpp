#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "base/whole_file.h"
#include "script/token.h"
#include "support/all_scripts.h"
#include "support/shell.h"
#include "support/temporary_folder.h"
#include "workbench/source_tokens.h"
#include "workbench/token_spacing.h"

// Holds the highlighting of editors/ to the tokeniser, over all our scripts.
namespace kelmora {
namespace {

namespace fs = std::filesystem;

std::string kindOf(const std::string& source, const SourceToken& token) {
    const std::string text(textOf(source, token));
    std::uintptr_t address = 0;
    switch (token.kind) {
        case SourceTokenKind::Comment:
            return "comment";
        case SourceTokenKind::String:
            return "string";
        case SourceTokenKind::Sign:
            return "sign";
        default:
            if (isKeyword(text)) return "keyword";
            if (isTrueToken(text) || isFalseToken(text)) return "boolean";
            return tokenLooksNumeric(text) || parsePointerLiteral(text, address) ? "number" : "word";
    }
}

class Highlighting : public testing::Test {
protected:
    Highlighting() {
        std::vector<ScriptFile> files = allScripts();
        const std::string signs =
            "a#2=x<-1&&y||z~=$1f @@ c \"\n'it\\'s' + \"@@\\\"\n  over\" .5 1. 12x $fg\n"
            "functional = true#1 ture endless end\nt = {in_ = not, x:1}\n";
        files.push_back({file("signs.vs", signs), signs});
        std::string list;
        std::set<std::string_view> seen;
        for (const ScriptFile& each : files) addTokens(each, seen, list);
        EXPECT_TRUE(writeWholeFile(tokens(), list));
    }

    std::string file(const std::string& name, const std::string& text) const {
        EXPECT_TRUE(writeWholeFile((folder_ / name).string(), text));
        return (folder_ / name).string();
    }
    std::string tokens() const { return (folder_ / "tokens.txt").string(); }

    // The first and the last byte of each token, of lines that were not there yet.
    static void addTokens(const ScriptFile& file, std::set<std::string_view>& seen, std::string& list) {
        std::uint32_t line = 0xFFFFFFFF;
        bool isNew = false;
        for (const SourceToken& token : scanSource(file.source)) {
            if (token.line != line) {
                const std::string_view rest = std::string_view(file.source).substr(token.begin);
                isNew = seen.insert(rest.substr(0, rest.find('\n'))).second;
            }
            line = token.line;
            if (!isNew) continue;
            const std::string kind = kindOf(file.source, token);
            const auto add = [&](std::size_t row, std::size_t column) {
                list += file.path + '\t' + std::to_string(row) + '\t' + std::to_string(column) + '\t' + kind +
                        '\n';
            };
            add(token.line + 1u, token.column + 1u);
            const std::string_view text = textOf(file.source, token);
            const std::size_t feeds = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
            const std::size_t feed = text.rfind('\n');
            if (token.isClosed)
                add(token.line + 1u + feeds,
                    feed == std::string_view::npos ? token.column + text.size() : text.size() - feed - 1);
        }
    }

    TemporaryFolder folder_;
};

TEST_F(Highlighting, OfVimAgreesWithTheTokeniser) {
    if (platform_is_windows() || runInShell("vim --version 2>&1").text.find("+syntax") == std::string::npos)
        GTEST_SKIP() << "Vim with syntax highlighting is not installed: tools/setup test brings it";
    const std::string answer = (folder_ / "answer.txt").string();
    const std::string vim = sourceFolder() + "/editors/vim";
    runInShell("cd " + quoted(folder_.path().string()) +
               " && TOKENS=tokens.txt ANSWER=answer.txt LC_ALL=C vim -Nu NONE -n -i NONE -es "
               "-c 'set encoding=latin1 runtimepath^=" +
               vim + "' -c 'filetype plugin on' -c 'syntax on' -S " +
               quoted(sourceFolder() + "/tests/tool/vim_tokens.vim") + " 2>&1 < /dev/null");
    const auto said = readWholeFile(answer);
    ASSERT_TRUE(said);
    EXPECT_EQ(said->substr(0, 2000), "");
}

TEST_F(Highlighting, OfTextMateAgreesWithTheTokeniser) {
    if (runInShell("python3 --version 2>&1").exitCode != 0) GTEST_SKIP() << "Python 3 is not installed";
    const ShellOutcome outcome =
        runInShell("python3 " + quoted(sourceFolder() + "/tests/tool/textmate_tokens.py") + " " +
                   quoted(sourceFolder() + "/editors/textmate/vesper.tmLanguage.json") + " " +
                   quoted(tokens()) + " 2>&1");
    EXPECT_EQ(outcome.text.substr(0, 2000), "");
    EXPECT_EQ(outcome.exitCode, 0);
}

}  // namespace
}  // namespace kelmora
