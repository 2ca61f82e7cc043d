#include <gtest/gtest.h>

#include "base/memory_budget.h"
#include "support/guest_run.h"

// Programs that ask for too much: each ends with an error that pcall catches, and the program goes on.
namespace kelmora {
namespace {

struct Hostile {
    const char* name;
    const char* language;
    std::string source;
    const char* problem;
};

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

constexpr const char* tooDeep = "Stack overflow: calls or expressions are nested too deeply";
constexpr const char* tooLarge = "the text is too large";

// Lua calls `work` in pcall and prints the error.
std::string lua(const std::string& work) {
    return work + "\nlocal ok, problem = pcall(work)\nprint(ok, problem) print('goes on')\n";
}
std::string rwby(const std::string& work) {
    return work + "\nresult = pcall(work)\nprint(result[0], result[1])\nprint(\"goes on\")\n";
}

const Hostile hostiles[] = {
    {"Recursion", ".lua", lua("function work() return work() + 1 end"), tooDeep},
    {"RecursionThroughMethods", ".lua",
     lua("t = {} function t:go() return self:go() .. 1 end function work() t:go() end"), tooDeep},
    {"RecursionThroughSort", ".lua", lua("function work() table.sort({2, 1}, work) end"), tooDeep},
    {"RecursionThroughGsub", ".lua", lua("function work() return (('x'):gsub('x', work)) end"), tooDeep},
    {"RecursionThroughLoad", ".lua", lua("function work() return load('return work()')() end"), tooDeep},
    {"RecursionThroughIterators", ".lua", lua("function work() for x in work do end end"), tooDeep},
    {"DoubledText", ".lua", lua("function work() local s = 'x' while true do s = s .. s end end"), tooLarge},
    {"RepeatedText", ".lua", lua("function work() return ('x'):rep(1000000000) end"), tooLarge},
    {"RepeatedTextBeyondCount", ".lua", lua("function work() return ('xx'):rep(9223372036854775807) end"),
     "string.rep: the result is too large"},
    {"WideFormat", ".lua", lua("function work() return string.format('%1000000000d', 1) end"),
     "string.format: the result is too large"},
    {"SlowPattern", ".lua", lua("function work() return ('a'):rep(3000):find(('a-'):rep(20) .. 'b') end"),
     "the pattern is too complex for this subject: too many steps"},
    {"DeepPattern", ".lua", lua("function work() return ('x'):find(('('):rep(100000)) end"),
     "gsub: invalid regex pattern '(((("},
    {"FarUnpack", ".lua",
     lua("function work() return table.unpack({}, -9223372036854775807, 9223372036854775807) end"),
     "table.unpack: too many values"},
    {"WideConcat", ".lua", lua("function work() return table.concat({}, '', -9223372036854775807, 1) end"),
     "table.concat: item -9223372036854775807 is not a string or number"},
    {"DeepSource", ".lua", lua("function work() error(select(2, load('x = ' .. ('('):rep(100000)))) end"),
     tooDeep},
    {"ManyCaptures", ".lua", lua("function work() return load('return ' .. ('{'):rep(50000))() end"),
     "attempt to call a nil value"},
    {"Recursion", ".rwby", rwby("def work()\n  x = work() + 1\n  return x\nend"), tooDeep},
    {"RecursionOfFastForms", ".rwby", rwby("def work()\n  return work() + 1\nend"), tooDeep},
    {"RecursionThroughSort", ".rwby",
     rwby("def less(a, b)\n  return table_sort([2, 1], less)\nend\ndef work()\n  return less(1, 2)\nend"),
     tooDeep},
    {"RecursionThroughLoad", ".rwby", rwby("def work()\n  f = load(\"return work()\")\n  return f()\nend"),
     tooDeep},
    {"DoubledText", ".rwby", rwby("def work()\n  s = \"x\"\n  while true\n    s = s + s\n  end\nend"),
     tooLarge},
    {"RepeatedText", ".rwby", rwby("def work()\n  return string_rep(\"x\", 1000000000)\nend"),
     "string_rep result is too large"},
    {"FarIndex", ".rwby", rwby("def work()\n  a = []\n  a[1000000000000] = 1\nend"),
     "the array is too large"},
    {"LongRange", ".rwby", rwby("def work()\n  return range(1, 9223372036854775807)\nend"),
     "the array is too large"},
    {"NestedAsText", ".rwby",
     rwby("def work()\n  a = []\n  i = 0\n  while i < 100000\n    a = [a]\n    i = i + 1\n  end\n  return "
          "to_s(a)\nend"),
     "containers are nested too deeply"},
    {"SlowPattern", ".rwby",
     rwby("def work()\n  return string_find(string_rep(\"a\", 3000), string_rep(\"a-\", 20) + \"b\")\nend"),
     "the pattern is too complex for this subject: too many steps"},
    {"DeepSource", ".rwby", rwby("def work()\n  f = load(string_rep(\"(\", 100000))\n  return f\nend"),
     tooDeep},
};

class HostilePrograms : public testing::TestWithParam<Hostile> {};

TEST_P(HostilePrograms, EndInAnErrorThatCanBeCaught) {
    const GuestLanguage language =
        std::string(GetParam().language) == ".lua" ? luaLanguage() : rwbyLanguage();
    const GuestOutcome outcome = language.ways[0].run(GetParam().source, "hostile");
    EXPECT_EQ(outcome.error, "");
    EXPECT_TRUE(outcome.output.starts_with("false\t")) << outcome.output.substr(0, 200);
    EXPECT_NE(outcome.output.find(GetParam().problem), std::string::npos) << outcome.output.substr(0, 200);
    EXPECT_TRUE(outcome.output.ends_with("goes on\n"));
}

INSTANTIATE_TEST_SUITE_P(All, HostilePrograms, testing::ValuesIn(hostiles), [](const auto& tested) {
    return std::string(tested.param.language).substr(1) + tested.param.name;
});

// With 32 MiB for all values. Afterwards everything that was taken is given back.
TEST(HostileMemory, ValuesEndAtTheirBudget) {
    const std::size_t most = MemoryBudget::most();
    const std::size_t used = MemoryBudget::used();
    MemoryBudget::setMost(used + (std::size_t{32} << 20));
    for (const char* work : {"t[i] = ('x'):rep(1000000)", "t[i] = i", "t['k' .. i] = i", "t = {t, i, i, i}",
                             "t[i] = ('x'):rep(100)"}) {
        const GuestOutcome outcome = luaLanguage().ways[0].run(
            lua(std::string("function work() local t, i = {}, 0 while true do i = i + 1 ") + work +
                " end end"),
            "hostile");
        EXPECT_NE(outcome.output.find("not enough memory\ngoes on"), std::string::npos)
            << work << outcome.output;
    }
    for (const char* work : {"array_push(t, string_rep(\"x\", 1000000))", "array_push(t, i)", "m[i] = i",
                             "t = [t, i, i, i]", "array_push(t, string_rep(\"x\", 100))"}) {
        const GuestOutcome outcome = rwbyLanguage().ways[0].run(
            rwby(std::string(
                     "def work()\n  t = []\n  m = map_new()\n  i = 0\n  while true\n    i = i + 1\n    ") +
                 work + "\n  end\nend"),
            "hostile");
        EXPECT_NE(outcome.output.find("out of memory\ngoes on"), std::string::npos) << work << outcome.output;
    }
    MemoryBudget::setMost(most);
    EXPECT_EQ(MemoryBudget::used(), used);
}

// Each either runs or says that it is nested too deeply.
TEST(HostileSources, NestedRwbyStatementsEndInAnError) {
    constexpr std::size_t deep = 100'000;
    for (const std::string& source :
         {repeated("if true\n", deep) + repeated("end\n", deep),
          repeated("while false\n", deep) + repeated("end\n", deep),
          repeated("def f()\n", deep) + repeated("end\n", deep),
          "x = " + repeated("[", deep) + repeated("]", deep), "x = " + repeated("not ", deep) + "1",
          "x = " + repeated("-", deep) + "1", "if false\n" + repeated("elsif false\n", deep) + "end\n",
          "x = 1" + repeated(" + 1", deep), "x = a" + repeated("[0", deep) + repeated("]", deep),
          "x = " + repeated("print(", deep) + repeated(")", deep)}) {
        const GuestOutcome outcome = rwbyLanguage().ways[0].run(source, "nested");
        EXPECT_TRUE(outcome.error.empty() || outcome.error.find(tooDeep) != std::string::npos)
            << source.substr(0, 20) << ": " << outcome.error;
    }
}

}  // namespace
}  // namespace kelmora
