#include <gtest/gtest.h>

#include "rwby/map_object.h"
#include "support/capture_host.h"
#include "support/rwby_run.h"
#include "support/temporary_folder.h"

// The machine as its host sees it, and what programs cannot do to it.
namespace kelmora {
namespace {

using vesper::ruby::ExecutionMode;
using vesper::ruby::RubyResult;
using vesper::ruby::RubyValue;
using vesper::ruby::RubyVM;

class RwbyMachine : public testing::Test {
protected:
    std::string valueOf(const std::string& source) {
        const RubyResult result = vm_.runScript(source);
        EXPECT_TRUE(result.success) << result.error;
        return result.value.toString();
    }
    std::string errorOf(const std::string& source) { return vm_.runScript(source).error; }

    CaptureHost host_;
    NativeStack stack_;
    RubyVM vm_{host_, stack_};
};

TEST_F(RwbyMachine, KeepsGlobalsBetweenRuns) {
    EXPECT_EQ(valueOf("x = 5\ndef twice(n) return n * 2 end"), "nil");
    EXPECT_EQ(valueOf("return twice(x)"), "10");
    EXPECT_EQ(vm_.getGlobal("x")->asInteger(), 5);
    EXPECT_FALSE(vm_.getGlobal("y").has_value());
    RubyValue map = RubyValue::makeMap();
    map.mapObject().set("k", RubyValue::array({RubyValue::text("v"), RubyValue::number(1.5)}));
    vm_.setGlobal("m", map);
    EXPECT_EQ(valueOf("return m"), "{k: [v, 1.5]}");
    EXPECT_EQ(errorOf("x = 6\nfail()"), "<string>:2: undefined variable or function 'fail'");
    EXPECT_EQ(valueOf("return x"), "6");
}

TEST_F(RwbyMachine, CallsFunctionsOfItsHost) {
    vm_.bindFunction("sum", [](RubyVM& vm, std::span<const RubyValue> arguments) {
        std::int64_t sum = 0;
        for (const RubyValue& value : arguments) sum += value.asInteger();
        if (sum == 0) throw std::runtime_error("nothing to add");
        vm.setGlobal("last_sum", RubyValue::integer(sum));
        return RubyValue::integer(sum);
    });
    EXPECT_EQ(valueOf("return sum(1, 2, 3) + last_sum"), "12");
    EXPECT_EQ(errorOf("\nsum()"), "<string>:2: nothing to add");
    EXPECT_EQ(errorOf("sum(nil)"), "<string>:1: value is not numeric");
    EXPECT_EQ(valueOf("return pcall(sum)"), "[false, <string>:1: nothing to add]");
    vm_.bindFunction("empty", {});
    EXPECT_EQ(errorOf("empty()"), "<string>:1: attempted to call a non-function value");
    EXPECT_EQ(errorOf("pcall(empty)"), "<string>:1: pcall function handle is empty");
}

TEST_F(RwbyMachine, MissesAnErrorFunctionThatWasRemoved) {
    const std::string guarded = "def f(n)\n if n then error(\"no\") end\n return n\nend\n";
    vm_.removeGlobal("error");
    for (const ExecutionMode mode : {ExecutionMode::Full, ExecutionMode::PlainInstructions}) {
        vm_.setExecutionMode(mode);
        EXPECT_EQ(errorOf(guarded + "f(true)"), "<string>:2: undefined variable or function 'error'");
        EXPECT_EQ(valueOf(guarded + "return f(false)"), "false");
    }
}

TEST_F(RwbyMachine, EndsRunsAtTheStepLimit) {
    vm_.setStepLimit(150);
    const std::string loops[] = {"while true end", "while true; pcall(len, 1); end",
                                 "def f() return pcall(f) end\nf()", "i = 1\nwhile i < 2 x = 1 end"};
    for (const std::string& loop : loops)
        for (const ExecutionMode mode : {ExecutionMode::Full, ExecutionMode::PlainInstructions}) {
            vm_.setExecutionMode(mode);
            EXPECT_EQ(errorOf(loop), "Step limit reached");
        }
    vm_.setStepLimit(0);
    EXPECT_EQ(valueOf("i = 0\nwhile i < 5000 i = i + 1 end\nreturn i"), "5000");
}

TEST_F(RwbyMachine, SurvivesEndlessRecursion) {
    const std::string overflow = "Stack overflow: calls or expressions are nested too deeply";
    const std::string recursions[] = {
        "def f(n) return f(n + 1) + 1 end",                                      // a fast form
        "def f(n)\n x = f(n + 1)\n return x\nend",                               // inner code
        "def f(n) return pcall(f, n)[3][0] end",                                 // through pcall
        "def f(n)\n table_sort([1, 2], f2)\nend\ndef f2(a, b) return f(1) end",  // through the library
    };
    for (const std::string& recursion : recursions)
        for (const ExecutionMode mode :
             {ExecutionMode::Full, ExecutionMode::WithoutFastForms, ExecutionMode::PlainInstructions}) {
            vm_.setExecutionMode(mode);
            const std::string error = errorOf(recursion + "\nf(1)");
            EXPECT_TRUE(error.ends_with(overflow) || error.ends_with("expects an array, map, or string"))
                << error;
        }
    vm_.setExecutionMode(ExecutionMode::Full);
    const std::string nested = "def g(n)\n if n == 0\n return 0\n end\n return g(n - 1) + 1\nend\nreturn g(";
    EXPECT_EQ(valueOf(nested + "20000)"), "20000");
    vm_.setExecutionMode(ExecutionMode::PlainInstructions);
    EXPECT_EQ(valueOf(nested + "200)"), "200");
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

TEST_F(RwbyMachine, SurvivesDeeplyNestedSources) {
    constexpr std::size_t deep = 100'000;
    const std::string sources[] = {
        "x = " + repeated("(", deep) + "1" + repeated(")", deep),
        "x = " + repeated("[", deep) + repeated("]", deep),
        "x = " + repeated("-", deep) + "1",
        "x = " + repeated("not ", deep) + "1",
        "x = " + repeated("len(", deep) + repeated(")", deep),
        repeated("if 1 then ", deep) + repeated("end ", deep),
        repeated("while nil ", deep) + repeated("end ", deep),
        repeated("def f() ", deep) + repeated("end ", deep),
        "x = " + repeated("a[", deep) + "0" + repeated("]", deep),
    };
    for (const std::string& source : sources)
        EXPECT_NE(errorOf(source).find("Stack overflow"), std::string::npos) << source.substr(0, 20);
    // What is long without being deep is fine.
    EXPECT_EQ(valueOf("return 1" + repeated(" + 1", deep)), "100001");
    EXPECT_EQ(valueOf("def long() return 1" + repeated(" + 1", deep) + " end\nreturn long()"), "100001");
    EXPECT_EQ(valueOf("if nil" + repeated("\nelsif nil", deep) + "\nelse\nreturn 5\nend"), "5");
}

TEST_F(RwbyMachine, FreesDeepChainsWithoutRecursion) {
    const std::string chains =
        "a = []\nm = map_new()\ni = 0\nwhile i < 300000\n a = [a]\n n = map_new()\n n[\"m\"] = m\n m = n\n"
        " i = i + 1\nend\n";
    EXPECT_EQ(valueOf(chains + "r = pcall(to_s, a)\na = nil\nm = nil\nn = nil\nreturn r[1]"),
              "<string>:11: containers are nested too deeply");
}

TEST_F(RwbyMachine, HoldsTextsAndArraysToTheirLimits) {
    EXPECT_EQ(errorOf("s = \"0123456789abcdef\"\nwhile true\n s = s + s\nend"),
              "<string>:3: the text is too large");
    EXPECT_EQ(errorOf("a = []\na[67108864] = 1"), "<string>:2: the array is too large");
    EXPECT_EQ(errorOf("array_new(67108865)"), "<string>:1: the array is too large");
    EXPECT_EQ(errorOf("string_format(\"%999999999d\", 1)"), "<string>:1: the text is too large");
    // A pattern that would search for ever.
    EXPECT_EQ(
        valueOf(
            "r = pcall(string_find, string_rep(\"a\", 500), string_rep(\"a*\", 20) + \"b\")\nreturn r[0]"),
        "false");
}

TEST_F(RwbyMachine, ReadsAndWritesFiles) {
    const TemporaryFolder folder;
    vm_.setGlobal("path", RubyValue::text((folder / "notes.txt").string()));
    EXPECT_EQ(valueOf("return [file_exists?(path), write_file(path, \"one\"), append_file(path, \" two\"),"
                      " read_file(path), file_exists?(path)]"),
              "[false, true, true, one two, true]");
    const std::string nowhere = (folder / "none" / "x").string();
    vm_.setGlobal("path", RubyValue::text(nowhere));
    EXPECT_EQ(errorOf("read_file(path)"), "<string>:1: failed to open file: " + nowhere);
    EXPECT_EQ(errorOf("write_file(path, 1)"), "<string>:1: value is not a string");
    EXPECT_EQ(errorOf("write_file(path, \"\")"), "<string>:1: failed to open file for writing: " + nowhere);
    EXPECT_EQ(errorOf("append_file(path, \"\")"),
              "<string>:1: failed to open file for appending: " + nowhere);
}

// Each run without fast forms may not use one: the forms that are expected to be quick are.
TEST_F(RwbyMachine, BuildsFastFormsForSmallFunctions) {
    const auto kindOf = [&](const std::string& source) {
        const RubyValue function = vm_.compileFunction(source, "test");
        return static_cast<int>(function.functionObject().program->functions[1].fast.kind);
    };
    EXPECT_EQ(kindOf("def f(a, b) return a * b + len([a, \"x\"])[0] end"), 1);
    EXPECT_EQ(kindOf("def f(a) if a < 0 then error(\"low\") end\n return a end"), 2);
    EXPECT_EQ(kindOf("def f(a) a = 1\n return a end"), 0);
    EXPECT_EQ(kindOf("def f(a) a + 1 end"), 0);
    EXPECT_EQ(kindOf("def f(a) if a then error(\"low\" + a) end\n return a end"), 0);
    EXPECT_EQ(kindOf("def f(a) if a then error(\"low\") else a end\n return a end"), 0);
    EXPECT_EQ(kindOf("def f(error) if 1 then error(\"low\") end\n return 1 end"), 0);
}

}  // namespace
}  // namespace kelmora
