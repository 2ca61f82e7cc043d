#include <gtest/gtest.h>

#include "host/registration.h"
#include "support/all_scripts.h"
#include "support/capture_host.h"
#include "support/script_run.h"
#include "workbench/project_symbols.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

class SymbolsTest : public testing::Test {
protected:
    // The offset of a marker's `|` in a source that is then set without it.
    std::size_t setMarked(const std::string& path, std::string source) {
        const std::size_t offset = source.find('|');
        source.erase(offset, 1);
        project_.set(path, source);
        return offset;
    }
    // The places as "path:text@offset".
    std::string told(const std::vector<SourceSpan>& places) const {
        std::string text;
        for (const SourceSpan& place : places) {
            const std::string& source = project_.find(place.path)->source();
            text +=
                (text.empty() ? "" : " ") + place.path + ':' +
                std::to_string(std::count(source.begin(),
                                          source.begin() + static_cast<std::ptrdiff_t>(place.begin), '\n') +
                               1) +
                ':' + source.substr(place.begin, place.end - place.begin);
        }
        return text;
    }
    // The sources with the rename done, or why not.
    std::string renamed(const std::string& marked, const std::string& name) {
        const std::size_t offset = setMarked("a", marked);
        const RenamePlan plan = project_.rename("a", offset, name);
        if (!plan.refusal.empty()) return plan.refusal;
        std::string text = project_.find("a")->source();
        for (auto place = plan.places.rbegin(); place != plan.places.rend(); ++place)
            if (place->path == "a") text.replace(place->begin, place->end - place->begin, name);
        return text;
    }

    ProjectSymbols project_;
};

TEST_F(SymbolsTest, LocalsAreRenamedInTheirBlockAlone) {
    const std::string source =
        "x = 1\n"
        "function f(p)\n"
        "    local |x = x + x#1\n"
        "    if p\n"
        "        x += x#3\n"
        "        local x = 2\n"
        "        print(x)\n"
        "    end\n"
        "    t = {x = x, y: x}\n"
        "    function g()\n"
        "        return x\n"
        "    end\n"
        "end\n"
        "print(x)";
    EXPECT_EQ(renamed(source, "n"),
              "x = 1\n"
              "function f(p)\n"
              "    local n = x + x#1\n"
              "    if p\n"
              "        n += n#3\n"
              "        local x = 2\n"
              "        print(x)\n"
              "    end\n"
              "    t = {x = n, y: n}\n"
              "    function g()\n"
              "        return x\n"
              "    end\n"
              "end\n"
              "print(x)");
    EXPECT_EQ(renamed(source, "p"), "`p` is used in the same function");
}

TEST_F(SymbolsTest, NamesThatACalleeMaySeeAreRenamedTogether) {
    // Nobody else says `who`.
    EXPECT_EQ(renamed("function f(who)\n    g(wh|o)\nend\nfor who in []\nend", "name"),
              "function f(name)\n    g(name)\nend\nfor who in []\nend");
    // `g` may mean the parameter of whoever calls it.
    project_.set("b", "function g()\n    return who\nend\n");
    const std::string source =
        "function f(who)\n    g(wh|o)\nend\nfunction h()\n    local who = 1\n    return who\nend\nwho#2 = 1";
    EXPECT_EQ(renamed(source, "name"),
              "function f(name)\n    g(name)\nend\nfunction h()\n    local who = 1\n    return "
              "who\nend\nname#2 = 1");
    EXPECT_EQ(told(project_.rename("a", source.find('|'), "name").places), "a:1:who a:2:who a:8:who b:2:who");
}

TEST_F(SymbolsTest, RenamesAreRefusedWhereTheyWouldChangeTheMeaning) {
    project_.addHostName("print");
    project_.set("b", "other = 1\ncoins = load(\"return lamp\")");
    for (const auto& [source, name, told] :
         {std::tuple{"pri|nt(1)", "say", "`print` is the engine's"},
          {"a| = 1", "print", "`print` is the engine's"},
          {"a| = 1", "other", "`other` is used already, in b:1"},
          {"lam|p = 1", "rope", "`lamp` is in a text that is run, in b:2"},
          {"a| = 1", "end", "`end` is no name for a variable"},
          {"a| = 1", "2x", "`2x` is no name for a variable"},
          {"a = \"x|y\"", "z", "no name of a variable or a function stands here"},
          {"t = {ke|y = 1}", "z", "no name of a variable or a function stands here"},
          {"a| = 1", "a", "that is its name already"}})
        EXPECT_EQ(renamed(source, name), told);
    EXPECT_EQ(renamed("go|ld = 1\nprint(Vesper[\"getVar\"](\"gold\"), \"gold\")", "coin"),
              "coin = 1\nprint(Vesper[\"getVar\"](\"coin\"), \"gold\")");
}

TEST_F(SymbolsTest, FindsDefinitionsAndReferences) {
    project_.set(
        "b",
        "function look(what)\n    return what\nend\nfunction acts[\"open\"]()\n    jumpTo(\"inn\")\nend");
    std::size_t at = setMarked("a", "x = loo|k(1)\nnest \"inn\"\nend\nlook(acts[\"open\"])");
    EXPECT_EQ(told(project_.definitions("a", at)), "b:1:look");
    EXPECT_EQ(told(project_.references("a", at)), "a:1:look a:4:look b:1:look");
    at = project_.find("a")->source().find("open");
    EXPECT_EQ(told(project_.definitions("a", at)), "b:4:\"open\"");
    EXPECT_EQ(told(project_.references("a", at)), "a:4:\"open\" b:4:\"open\"");
    at = project_.find("b")->source().find("inn");
    EXPECT_EQ(told(project_.definitions("b", at)), "a:2:\"inn\"");
    at = project_.find("b")->source().find("return what") + 8;
    EXPECT_EQ(told(project_.definitions("b", at)), "b:1:what");
}

TEST_F(SymbolsTest, SeesNamesWhereTheyAreBound) {
    const std::size_t at = setMarked("a",
                                     "gold = 1\nfunction f(guest, x)\n    for g in []\n    end\n"
                                     "    local gate = 1\n    print(g|\nend\nGo = g");
    std::string seen;
    for (const NameInSight& name : project_.namesInSight("a", at, "g"))
        seen += name.name + (name.isBound ? "* " : " ");
    EXPECT_EQ(seen, "Go gate* gold guest* ");
}

// Any source, however broken, is read; and in ours a name is bound where its function has it.
TEST_F(SymbolsTest, ReadsEveryScript) {
    for (const ScriptFile& file : allScripts()) {
        for (std::size_t length = 0; length < file.source.size(); length += 1 + file.source.size() / 8)
            SourceSymbols(file.source.substr(0, length));
        const SourceSymbols symbols(file.source);
        for (std::size_t i = 1; i < symbols.occurrences().size(); ++i)
            ASSERT_LT(symbols.occurrences()[i - 1].token, symbols.occurrences()[i].token)
                << file.path << ' ' << symbols.text(symbols.occurrences()[i].token);
        for (std::size_t offset = 0; offset < file.source.size(); offset += 37) symbols.tokenAt(offset);
    }
}

// A renamed script prints what it printed before.
TEST_F(SymbolsTest, RenamesKeepWhatScriptsDo) {
    CaptureHost host;
    Runtime runtime(host);
    registerFunctions(runtime);
    for (const auto& [name, value] : runtime.engine.globals()) project_.addHostName(name);
    std::size_t tried = 0;
    for (const ScriptFile& file :
         scriptsBelow({"tests/scripts/call", "tests/scripts/coroutine", "tests/scripts/scope",
                       "tests/scripts/statement", "tests/scripts/expression", "tests/scripts/label",
                       "tests/scripts/library"})) {
        const std::string shown = fs::path(file.path).filename().string();
        const ScriptOutcome before = runTestScript(file.source, shown, ScriptWay::Text);
        if (!before.error.empty()) continue;
        project_.set("a", file.source);
        std::set<std::string> done;
        const SourceSymbols symbols = *project_.find("a");
        for (const NameOccurrence& each : symbols.occurrences()) {
            const std::string name(symbols.name(each));
            if (!done.insert(name + std::to_string(each.binding)).second) continue;
            const RenamePlan plan = project_.rename("a", symbols.tokens()[each.token].begin, "renamedHere");
            std::string source = file.source;
            for (auto place = plan.places.rbegin(); place != plan.places.rend(); ++place)
                source.replace(place->begin, place->end - place->begin, "renamedHere");
            const ScriptOutcome after = runTestScript(source, shown, ScriptWay::Text);
            tried += !plan.places.empty();
            EXPECT_EQ(after.output, before.output) << file.path << ' ' << name;
            EXPECT_EQ(after.error, before.error) << file.path << ' ' << name;
        }
    }
    EXPECT_GT(tried, 100u);
}

}  // namespace
}  // namespace kelmora
