#include "lua/lua_vm.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/whole_file.h"
#include "guest/location_error.h"
#include "support/capture_host.h"
#include "support/temporary_folder.h"

namespace vesper::lua {
namespace {

class LuaMachine : public testing::Test {
protected:
    LuaMachine() { stack_.markBase(); }

    std::string errorOf(std::string_view source) {
        const LuaResult result = machine_.runScriptString(source);
        EXPECT_EQ(result.success, result.error.empty());
        return result.error;
    }
    std::string compileError(std::string_view source) {
        try {
            machine_.compileScript(source, "c");
        } catch (const kelmora::guest::GuestError& error) {
            return error.what();
        }
        return "";
    }

    kelmora::CaptureHost host_;
    kelmora::NativeStack stack_;
    LuaVM machine_{host_, stack_};
};

using List = std::vector<LuaValue>;

TEST_F(LuaMachine, EverySyntaxErrorHasItsWordsAndItsPlace) {
    const std::pair<const char*, const char*> cases[] = {
        {"if x print() end", "1:6: expected 'then' after if condition"},
        {"if x then elseif y end", "1:20: expected 'then' after elseif condition"},
        {"if x then", "1:10: expected 'end' after if statement"},
        {"while x end", "1:9: expected 'do' after while condition"},
        {"while x do", "1:11: expected 'end' after while loop"},
        {"for 1", "1:5: expected loop variable name"},
        {"for i = 1 do end", "1:11: expected ',' after numeric for start value"},
        {"for i = 1, 2 end", "1:14: expected 'do' after numeric for range"},
        {"for i = 1, 2 do", "1:16: expected 'end' after numeric for loop"},
        {"for a, b = 1", "1:10: expected 'in' in generic for loop"},
        {"for a in next, t do end", "1:14: expected 'do' after generic for iterator"},
        {"for a in b do", "1:14: expected 'end' after generic for loop"},
        {"local 5", "1:7: expected local variable name"},
        {"local function (", "1:16: expected local function name"},
        {"function ()", "1:10: expected function name"},
        {"function a.1()", "1:12: expected field name after '.'"},
        {"function a.()", "1:12: expected field name after '.'"},
        {"function a:()", "1:12: expected method name after ':'"},
        {"function a[1]() end", "1:11: invalid function target"},
        {"function f(1)", "1:12: expected parameter name"},
        {"function f(...)", "1:12: expected parameter name"},
        {"function f(a", "1:13: expected ')' after parameter list"},
        {"function f()", "1:13: expected 'end' after function body"},
        {"a, b", "1:5: expected '=' in assignment"},
        {"f() = 1", "1:5: invalid assignment target"},
        {"a", "1:2: expected function call"},
        {"a:b", "1:4: expected '(' before arguments"},
        {"a:5()", "1:3: expected method name after ':'"},
        {"f(1", "1:4: expected ')' after arguments"},
        {"a[1 = 2", "1:5: expected ']' after index expression"},
        {"a = (1", "1:7: expected ')' after expression"},
        {"a = {[1 = 2}", "1:9: expected ']' after table key"},
        {"a = {[1] 2}", "1:10: expected '=' after table key"},
        {"a = {1, 2", "1:10: expected '}' after table constructor"},
        {"a =\n\n  )", "3:3: expected expression"},
        {"a = ...", "1:5: expected expression"},
        {"x ~ y", "1:3: unexpected '~'"},
        {"x = 2 ^ 3", "1:7: unexpected character '^'"},
        {"x = 'a", "1:6: unterminated string literal"},
        {"x = 'a\\", "1:8: unterminated string escape"},
        {"x = [[a", "1:5: unterminated long string literal"},
        {"--[[ a", "1:3: unterminated long string literal"},
        {"break", "1:1: break used outside a loop"},
        {"while x do local f = function() break end end", "1:33: break used outside a loop"},
        {"do end", "1:1: expected expression"},
        {"end", "1:1: expected expression"},
    };
    for (const auto& [source, text] : cases)
        EXPECT_EQ(compileError(source), std::string("c:") + text) << source;
}

TEST_F(LuaMachine, ResultsLeaveAsPlainTrees) {
    const LuaResult result = machine_.runScriptString(
        "return 1, 2.5, 3.0, 'x', true, nil, {1, {2}}, {a = 1, [2] = 'b'}, {}, print, {1, nil, 3}");
    ASSERT_TRUE(result.success) << result.error;
    ASSERT_EQ(result.values.size(), 11u);
    EXPECT_EQ(result.values[0], LuaValue(std::int64_t{1}));
    EXPECT_EQ(result.values[1], LuaValue(2.5));
    EXPECT_EQ(result.values[2], LuaValue(3.0));
    EXPECT_EQ(result.values[3], LuaValue("x"));
    EXPECT_EQ(result.values[4], LuaValue(true));
    EXPECT_TRUE(result.values[5].isNil());
    EXPECT_EQ(result.values[6], LuaValue::makeArray({LuaValue(std::int64_t{1}),
                                                     LuaValue::makeArray({LuaValue(std::int64_t{2})})}));
    EXPECT_EQ(result.values[7], LuaValue::makeMap({{"2", LuaValue("b")}, {"a", LuaValue(std::int64_t{1})}}));
    EXPECT_EQ(result.values[8], LuaValue::makeArray());
    EXPECT_EQ(luaValueTypeName(result.values[9].kind()), "function");
    EXPECT_EQ(result.values[10].kind(), LuaValue::Kind::Map);
}

TEST_F(LuaMachine, NestingIsHeldOnBothWays) {
    const auto nested = [](int depth) {
        return "local t = 1 for i = 1, " + std::to_string(depth) + " do t = {t} end return t";
    };
    EXPECT_TRUE(machine_.runScriptString(nested(64)).success);
    constexpr const char* tooDeep = "value nesting is too deep to bridge into VesperScript";
    EXPECT_EQ(errorOf(nested(65)), tooDeep);
    EXPECT_EQ(errorOf("t = {} t.a = t t.b = t return t"), tooDeep);
    EXPECT_THROW(static_cast<void>(machine_.getGlobal("t")), std::runtime_error);
    EXPECT_EQ(errorOf("local t = 1 for i = 1, 40 do t = {t, t} end return t"),
              "value is too large to leave VesperLua");
    LuaValue value;
    for (int i = 0; i < 65; ++i) value = LuaValue::makeArray({value});
    EXPECT_THROW(machine_.setGlobal("x", value), std::runtime_error);
}

TEST_F(LuaMachine, GlobalsLastAndCrossBothWays) {
    EXPECT_FALSE(machine_.getGlobal("score").has_value());
    machine_.setGlobal("score", LuaValue::makeMap({{"best", LuaValue(std::int64_t{7})}}));
    EXPECT_TRUE(
        machine_.runScriptString("score.best = score.best + 1 function double(x) return x * 2 end").success);
    EXPECT_EQ(machine_.runScriptString("return double(score.best)").values, List{LuaValue(std::int64_t{16})});
    EXPECT_EQ(machine_.getGlobal("score")->asMap()[0].second.asInteger(), 8);
}

TEST_F(LuaMachine, BoundFunctionsTakeAndGivePublicValues) {
    machine_.bindNativeGlobal("sum", [](std::span<const LuaValue> arguments) {
        if (arguments.size() != 1) throw std::runtime_error("expects a list");
        std::int64_t total = 0;
        for (const LuaValue& item : arguments[0].asArray()) total += item.asInteger();
        return LuaValue(total);
    });
    EXPECT_EQ(machine_.runScriptString("return sum({1, 2, 3})").values, List{LuaValue(std::int64_t{6})});
    EXPECT_EQ(errorOf("\nsum()"), "<string>:2: expects a list");
    EXPECT_EQ(machine_.runScriptString("return pcall(sum)").values[1],
              LuaValue("<string>:1: expects a list"));
}

TEST_F(LuaMachine, ExitEndsTheRunPastEveryPcall) {
    const LuaResult result =
        machine_.runScriptString("pcall(function() os.exit(3) end) print('not reached')");
    EXPECT_TRUE(result.success);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(host_.output, "");
    EXPECT_EQ(machine_.runScriptString("return 1").values.size(), 1u);
}

TEST_F(LuaMachine, TheStepLimitEndsAllLoopsAndCalls) {
    for (const char* source :
         {"while true do end", "local i = 0 while i < 1 do i = i * 1 end", "for i = 1, math.huge do end",
          "while true do pcall(function() while true do end end) end",
          "for x in function() return 1 end do end",
          "local function f() return f() end while true do pcall(f) end",
          "table.sort({3, 2, 1}, function() while true do end end)"}) {
        machine_.setStepLimit(10'000);
        EXPECT_EQ(errorOf(source), "<string>:1: Step limit reached") << source;
    }
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

// Each of these either works or fails with a plain error.
TEST_F(LuaMachine, DeepNestingNeverEndsTheProcess) {
    constexpr std::size_t deep = 100'000;
    const std::string sources[] = {
        "return " + repeated("(", deep) + "1" + repeated(")", deep),
        "return " + repeated("{", deep) + repeated("}", deep),
        "return " + repeated("not ", deep) + "1",
        "return " + repeated("- ", deep) + "1",
        "return 1" + repeated(" + 1", deep),
        "return 1" + repeated(" .. 1", deep),
        "return " + repeated("1 + (", deep) + "1" + repeated(")", deep),
        "return 1" + repeated(" and 1", deep),
        "return " + repeated("f(", deep) + repeated(")", deep),
        "return a" + repeated(".b", deep),
        "return a" + repeated("[a", deep) + repeated("]", deep),
        "f" + repeated("()", deep),
        repeated("if x then ", deep) + repeated("end ", deep),
        repeated("while x do ", deep) + repeated("end ", deep),
        repeated("for i = 1, 2 do ", deep) + repeated("end ", deep),
        repeated("for i in x do ", deep) + repeated("end ", deep),
        repeated("function f() ", deep) + repeated("end ", deep),
        "x = " + repeated("function() return ", deep) + "1" + repeated(" end", deep),
        "local function f() " + repeated("while function() ", 2000) + repeated(" end do end", 2000) + " end",
        "if x then " + repeated(" elseif y then ", deep) + "end",
    };
    for (const std::string& source : sources) {
        const LuaResult result = machine_.runScriptString(source);
        const bool isCalm = result.success || result.error.find("Stack overflow") != std::string::npos ||
                            result.error.find("too many") != std::string::npos ||
                            result.error.find("attempt to") != std::string::npos ||
                            result.error.find("too deep") != std::string::npos;
        EXPECT_TRUE(isCalm) << source.substr(0, 40) << ": " << result.error;
    }
}

TEST_F(LuaMachine, WideInputRunsOrSaysWhy) {
    std::string locals;
    for (int i = 0; i < 40'000; ++i)
        locals += "local v" + std::to_string(i) + " = " + std::to_string(i) + "\n";
    EXPECT_NE(errorOf(locals).find("too many local variables"), std::string::npos);
    std::string constants = "local t = {}\n";
    for (int i = 0; i < 70'000; ++i)
        constants += "t.k" + std::to_string(i) + " = " + std::to_string(i) + ".5\n";
    constants += "return t.k69999 + t.k1, t.k69999 == 69999.5, t.k0 < 69998.5";
    EXPECT_EQ(machine_.runScriptString(constants).values,
              (List{LuaValue(std::int64_t{70'001}), LuaValue(true), LuaValue(true)}));
    const std::string items = "return #{" + repeated("0, ", 200'000) + "}";
    EXPECT_EQ(machine_.runScriptString(items).values, List{LuaValue(std::int64_t{200'000})});
    EXPECT_EQ(
        machine_
            .runScriptString("local function f(a, b) return b end return f(" + repeated("1, ", 5000) + "2)")
            .values,
        List{LuaValue(std::int64_t{1})});
}

TEST_F(LuaMachine, RunawayProgramsEndInAnError) {
    EXPECT_NE(errorOf("local s = 'x' while true do s = s .. s end").find("the text is too large"),
              std::string::npos);
    EXPECT_NE(errorOf("local function f(x) return f({x}) + 1 end f()").find("Stack overflow"),
              std::string::npos);
    EXPECT_NE(errorOf("local function f(x) table.sort({1, 2}, f) end f()").find("Stack overflow"),
              std::string::npos);
    EXPECT_NE(errorOf("local function f(x) return pcall(pcall, f) end f() error('done')").find("done"),
              std::string::npos);
    EXPECT_TRUE(machine_.runScriptString("local t = {} for i = 1, 300000 do t = {t} end t = nil").success);
    EXPECT_TRUE(
        machine_
            .runScriptString("local f = print for i = 1, 300000 do local g = f f = function() g() end end")
            .success);
    EXPECT_TRUE(
        machine_.runScriptString("local t = {} t[1] = t local u = {t, t} t.u = u return tostring(t) ~= nil")
            .success);
}

TEST_F(LuaMachine, ImagesAreReadBackWithTheirName) {
    const kelmora::TemporaryFolder folder;
    const std::string path = (folder / "out.vlbc").string();
    std::string error;
    ASSERT_TRUE(machine_.writeBytecodeFile("print('ran')\nerror('here')", "named", path, &error)) << error;
    EXPECT_EQ(machine_.runBytecodeFile(path).error, "named:2: here");
    EXPECT_EQ(host_.output, "ran\n");
    EXPECT_FALSE(machine_.writeBytecodeFile("x =", "named", path, &error));
    EXPECT_EQ(error, "named:1:4: expected expression");
    EXPECT_EQ(machine_.runBytecodeFile(path).error, "named:2: here");
    const std::string nowhere = (folder / "no/such").string();
    EXPECT_FALSE(machine_.writeBytecodeFile("x = 1", "n", nowhere, &error));
    EXPECT_EQ(error, "failed to open file for writing: " + nowhere);
    EXPECT_EQ(machine_.runBytecodeFile(nowhere).error, "failed to open file: " + nowhere);
    EXPECT_EQ(machine_.runScriptFile(nowhere).error, "failed to open file: " + nowhere);
    const std::string source = (folder / "s.lua").string();
    ASSERT_TRUE(kelmora::writeWholeFile(source, "\nnothing()"));
    EXPECT_EQ(machine_.runScriptFile(source).error, source + ":2: attempt to call a nil value");
}

TEST_F(LuaMachine, DamagedImagesAreRefused) {
    LuaBytecode image = machine_.compileScript("return 5", "n");
    const auto errorFor = [&](LuaBytecode changed) { return machine_.runBytecode(changed).error; };
    const std::string prefix = "<lua-bytecode>: ";
    for (std::size_t size = 0; size < image.size(); ++size) {
        const std::string expected = size < 8 ? "bytecode file is too small"
                                     : size < 12 || (size >= 13 && size < 17)
                                         ? "bytecode is truncated"
                                         : "bytecode string exceeds file size";
        EXPECT_EQ(errorFor(LuaBytecode(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(size))),
                  prefix + expected)
            << size;
    }
    LuaBytecode changed = image;
    changed[0] = 'X';
    EXPECT_EQ(errorFor(changed), prefix + "invalid VesperLua bytecode header");
    changed = image;
    changed[4] = 2;
    EXPECT_EQ(errorFor(changed), prefix + "unsupported VesperLua bytecode version");
    changed = image;
    changed.push_back(0xFF);
    EXPECT_EQ(machine_.runBytecode(changed).values, List{LuaValue(std::int64_t{5})});
}

// Whatever stands in a file: it is refused, does not compile, or runs.
TEST_F(LuaMachine, EveryChangedImageIsRefusedOrRuns) {
    const LuaBytecode image = machine_.compileScript("local t = {1, k = 'x'} return #t .. t.k", "n");
    for (std::size_t at = 0; at < image.size(); ++at) {
        for (const int change : {0x00, 0xFF, 0x80, 0x01}) {
            LuaBytecode changed = image;
            changed[at] = static_cast<std::uint8_t>(change);
            const LuaResult result = machine_.runBytecode(changed);
            EXPECT_EQ(result.success, result.error.empty()) << at;
        }
    }
    // Magic, version and both lengths.
    for (const std::ptrdiff_t field : {0, 4, 8, 13}) {
        LuaBytecode changed = image;
        std::fill_n(changed.begin() + field, 4, std::uint8_t{0xFF});
        EXPECT_TRUE(machine_.runBytecode(changed).error.starts_with("<lua-bytecode>: ")) << field;
    }
}

TEST_F(LuaMachine, FilesAreReadAndWritten) {
    const kelmora::TemporaryFolder folder;
    machine_.setGlobal("path", LuaValue((folder / "f.txt").generic_string()));
    const LuaResult result = machine_.runScriptString(R"(
        local f = io.open(path, "w")
        f:write("first\nsecond ", 2, "\n12.5 7 tail")
        print(f:seek("cur"), f:seek("set", 1), f:close())
        print(pcall(function() f:write("x") end))
        f = io.open(path)
        print(f:read(), f:read("L"), f:read("n", "n"))
        print(f:read(2), f:read("a"), f:read("l"), f:read("a") == "")
        print(f:seek("end"), f:seek("set"), f:read(5), f:read(0) == "", f.unknown)
    )");
    EXPECT_TRUE(result.success) << result.error;
    EXPECT_EQ(host_.output,
              "26\t1\ttrue\nfalse\t<string>:5: native object handle is empty\n"
              "first\tsecond 2\n\t12.5\t7\n t\tail\tnil\ttrue\n26\t0\tfirst\ttrue\tnil\n");
}

}  // namespace
}  // namespace vesper::lua
