#include "support/by_tool.h"

// What an author reads below the words of a failure: the calls that led there, through all three languages.
namespace kelmora {
namespace {

class FailureTrail : public ByTool {
protected:
    void expectFailure(const std::string& arguments, const std::string& text) const {
        const ShellOutcome outcome = vesper("run " + arguments);
        EXPECT_EQ(outcome.text, text) << arguments;
        EXPECT_EQ(outcome.exitCode, 1) << arguments;
    }
};

TEST_F(FailureTrail, LeadsThroughLuaToTheScript) {
    write("mind.lua",
          "local mind = {}\n"
          "function mind.weigh(word)\n"
          "    return word.size + 1\n"
          "end\n"
          "function mind:decide(word) return 1 + self.weigh(word) end\n"
          "local function sorted(list)\n"
          "    table.sort(list, function(a, b)\n"
          "        return mind:decide(nil) < 1\n"
          "    end)\n"
          "end\n"
          "think = function(list) sorted(list) end\n"
          "pcall(think, {1, 2})\n"
          "local result = think({1, 2})\n");
    write("ask.vs", "function ask()\n    Lua[\"runFile\"](\"mind.lua\")\nend\nask()\n");
    const std::string trail =
        "mind.lua:3: attempt to index a nil value\n"
        "  at mind.lua:3 in function mind.weigh\n    return word.size + 1\n"
        "  called at mind.lua:5 in function mind:decide\n"
        "    function mind:decide(word) return 1 + self.weigh(word) end\n"
        "  called at mind.lua:8\n    return mind:decide(nil) < 1\n"
        "  called at mind.lua:7 in function sorted\n    table.sort(list, function(a, b)\n"
        "  called at mind.lua:11 in function think\n    think = function(list) sorted(list) end\n"
        "  called at mind.lua:13\n    local result = think({1, 2})\n"
        "  called at ask.vs:2 in function ask\n    Lua[\"runFile\"](\"mind.lua\")\n";
    expectFailure("ask.vs", trail + "  called at ask.vs:4\n    ask()\n");
    // Caught and raised again it is the same failure.
    edit("ask.vs", "\nask()\n", "\nok, words = pcall(ask)\nerror(words)\n");
    expectFailure("ask.vs", trail + "  called at ask.vs:4\n    ok, words = pcall(ask)\n");
}

TEST_F(FailureTrail, LeadsThroughRwbyToTheScript) {
    // `half` has a quick form, the others do not; `down` calls itself.
    write("heart.rwby",
          "def beat(n)\n  return n[1] + 1\nend\n"
          "def half(n)\n  return beat(n) / 2\nend\n"
          "def down(n)\n  if n > 0 then\n    rest = down(n - 1)\n    return rest\n  end\n"
          "  last = half(nil)\n  return last\nend\n"
          "print(pcall(down, 1)[1])\n"
          "def start(n)\n  got = pcall(down, n)\n  if got[0] == false then error(\"cold\") end\nend\n"
          "if isCold then start(1) end\n"
          "down(3)\n");
    write("ask.vs",
          "Ruby[\"setVar\"](\"isCold\", arguments[1] == \"cold\")\n"
          "Ruby[\"runFile\"](\"heart.rwby\")\n");
    const std::string printed = "heart.rwby:2: indexing expects an array, map, or string\n";
    expectFailure("ask.vs warm",
                  printed + printed +
                      "  at heart.rwby:2 in function beat\n    return n[1] + 1\n"
                      "  called at heart.rwby:5 in function half\n    return beat(n) / 2\n"
                      "  called at heart.rwby:12 in function down\n    last = half(nil)\n"
                      "  called at heart.rwby:9 in function down\n    rest = down(n - 1)\n    (3 times)\n"
                      "  called at heart.rwby:21\n    down(3)\n"
                      "  called at ask.vs:2\n    Ruby[\"runFile\"](\"heart.rwby\")\n");
    expectFailure("ask.vs cold", printed +
                                     "heart.rwby:18: cold\n  at heart.rwby:18 in function start\n"
                                     "    if got[0] == false then error(\"cold\") end\n"
                                     "  called at heart.rwby:20\n"
                                     "    if isCold then start(1) end\n"
                                     "  called at ask.vs:2\n    Ruby[\"runFile\"](\"heart.rwby\")\n");
}

TEST_F(FailureTrail, NamesWhatIsKnownAndNoMore) {
    write("a.vs",
          "code = \"def f(n)\\n  error('x')\\nend\\n\\nf(1)\"\n"
          "if arguments[1] == \"image\"\n"
          "    Ruby[\"runBytecode\"](Ruby[\"compileBytecode\"](code, \"made\"))\nend\n"
          "if arguments[1] == \"kept\"\n"
          "    Lua[\"runScript\"](\"function f()\\n  error('late')\\nend\", \"one\")\n"
          "    Lua[\"runScript\"](\"f()\")\nend\n"
          "if arguments[1] == \"form\"\n    Lua[\"runScript\"](\"f(\", \"two\")\nend\n"
          "if arguments[1] == \"deep\"\n"
          "    Lua[\"runScript\"](\"function f(n) return 1 + f(n) end\\nf(1)\", \"deep\")\nend\n");
    expectFailure("a.vs image",
                  "made:2: x\n  at made:2 in function f\n  called at made:5\n  called at a.vs:3\n"
                  "    Ruby[\"runBytecode\"](Ruby[\"compileBytecode\"](code, \"made\"))\n");
    expectFailure("a.vs kept",
                  "one:2: late\n  at one:2 in function f\n    error('late')\n"
                  "  called at <string>:1\n    f()\n  called at a.vs:7\n    Lua[\"runScript\"](\"f()\")\n");
    expectFailure("a.vs form",
                  "two:1:3: expected expression\n  at a.vs:10\n    Lua[\"runScript\"](\"f(\", \"two\")\n");
    const std::string deep = vesper("run a.vs deep").text;
    EXPECT_NE(deep.find("  at deep:1 in function f\n    function f(n) return 1 + f(n) end\n    ("),
              std::string::npos);
    EXPECT_LT(deep.size(), 400u);
}

TEST_F(FailureTrail, ShowsWhereAFailureBeganThatIsRaisedAgain) {
    write("a.vs",
          "function fall()\n    return [] < {}\nend\n"
          "ok, words = pcall(fall)\n"
          "if arguments[1] == \"again\"\n    error(words)\nend\n"
          "if arguments[1] == \"later\"\n    ok, more = pcall(toNumber)\n    error(words)\nend\n"
          "error(\"Cannot compare array with table\")\n");
    const std::string first =
        "Cannot compare array with table\n  at a.vs:2 in function fall\n    return [] < {}\n"
        "  called at a.vs:4\n    ok, words = pcall(fall)\n";
    for (const char* way : {"again", "later"}) expectFailure(std::string("a.vs ") + way, first);
    // The same words alone are not the same failure.
    expectFailure(
        "a.vs",
        "Cannot compare array with table\n  at a.vs:12\n    error(\"Cannot compare array with table\")\n");
}

TEST_F(FailureTrail, PointsAtTheLastStatementForWhatFailsBehindIt) {
    write("a.vs", "function leap()\n    x = 1\n    jumpTo(\"nowhere\")\nend\nleap()\n");
    expectFailure("a.vs",
                  "jumpTo target not found: nowhere\n  at a.vs:3 in function leap\n    jumpTo(\"nowhere\")\n"
                  "  called at a.vs:5\n    leap()\n");
}

}  // namespace
}  // namespace kelmora
