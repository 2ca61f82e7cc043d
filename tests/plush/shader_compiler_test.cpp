#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "plush/shader/compiler.h"
#include "plush/shader/tokeniser.h"

namespace kelmora::plush_shader {
namespace {

std::string repeated(std::string_view text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

std::shared_ptr<const Program> compiled(const std::string& source) {
    return compile(source, {{}, true});
}

std::string errorOf(const std::string& source, const CompileOptions& options = {{}, true}) {
    try {
        compile(source, options);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "none";
}

// The five fields of each instruction.
std::string listing(const Program& program) {
    std::string text;
    for (const Instruction& i : program.instructions)
        for (const int field : {int{i.op}, int{i.dst}, int{i.a}, int{i.b}, int{i.c}})
            text += std::to_string(field) + " ";
    return text;
}

TEST(ShaderTokens, NumbersStringsAndComments) {
    const auto tokens = detail::tokenise("1.2.3e1 .5 2e 1e99@@ no \"token\n'a b'~=; \"\"");
    std::vector<std::string> texts;
    for (const detail::Token& token : tokens) texts.push_back(token.text);
    EXPECT_EQ(texts, (std::vector<std::string>{"1.2.3e1", ".5", "2", "e", "1e99", "\n", "a b", "~=", ";", "",
                                               "\n", ""}));
    EXPECT_EQ(tokens[0].number, 1.2f);
    EXPECT_EQ(tokens[5].line, 1u);
    EXPECT_EQ(tokens.back().line, 2u);
    EXPECT_EQ(tokens.back().kind, detail::TokenKind::InputEnd);
    EXPECT_EQ(detail::tokenise("").size(), 2u);
}

TEST(ShaderCompiler, NumbersSlotsAndCopiesNamedValues) {
    const auto program = compiled("local q = tr\na, r = r, q + 2\nz = q == 2");
    // 11 tr, 12 q, 13 the 2, 14 z; temporaries from 15.
    EXPECT_EQ(listing(*program),
              "0 15 11 0 0 0 12 15 0 0 "
              "0 15 0 0 0 1 16 12 13 0 0 3 15 0 0 0 0 16 0 0 "
              "9 15 12 13 0 0 14 15 0 0 44 0 0 0 0 ");
    EXPECT_EQ(program->registerCount, 17u);
    EXPECT_EQ(program->writeMask, 9);
    EXPECT_TRUE(program->usesPixel);
    EXPECT_EQ(uniformNames(*program), std::vector<std::string>{"tr"});
    EXPECT_EQ(program->constants.size(), 1u);
}

TEST(ShaderCompiler, JumpsGoPastTheArmsThatAreNotTaken) {
    EXPECT_EQ(listing(*compiled("if a then r = 1 elseif g b = 1 else return end")),
              "18 0 3 4 0 0 12 11 0 0 0 0 12 0 0 17 0 0 9 0 "
              "18 0 1 8 0 0 12 11 0 0 0 2 12 0 0 17 0 0 9 0 44 0 0 0 0 44 0 0 0 0 ");
    const std::string lines = "if a > 0\nthen r = 1\nend";
    EXPECT_EQ(listing(*compiled("if a > 0 then r = 1 end")), listing(*compiled("if a > 0\n r = 1\n\nend")));
    EXPECT_EQ(errorOf(lines), "shader line 2: expected '=' but found 'r'");
}

TEST(ShaderCompiler, KnowsWhatAProgramTouches) {
    const auto touches = [](const std::string& source) {
        const auto program = compiled(source);
        return std::to_string(program->writeMask) + (program->usesPixel ? " pixel" : " constant");
    };
    EXPECT_EQ(touches("@@ comment"), "0 constant");
    EXPECT_EQ(touches("r = 1"), "1 constant");
    EXPECT_EQ(touches("r = width * VESPER_GREY_B + tr"), "1 constant");
    EXPECT_EQ(touches("r = g"), "1 pixel");
    EXPECT_EQ(touches("local r = y"), "0 pixel");
    EXPECT_EQ(touches("b = random()"), "4 pixel");
    EXPECT_EQ(touches("a = sampleB(1, 2)"), "8 pixel");
    EXPECT_EQ(touches("local g = 1; g = 2; return g, g"), "3 constant");
}

TEST(ShaderCompiler, ParametersOfAFunctionStandForThePixel) {
    const CompileOptions options{{"red", "", "b", "", "px", "py", "u"}, false};
    const auto program = compile("red = u.level + u[\"level\"]\nr, b = level, g", options);
    EXPECT_EQ(program->writeMask, 7 & ~2);
    EXPECT_EQ(uniformNames(*program), std::vector<std::string>{"level"});
    EXPECT_EQ(errorOf("px = 1", options), "shader line 1: cannot assign to 'px'");
    EXPECT_EQ(errorOf("x = 1", options), "shader line 1: cannot assign to built-in 'x'");
    EXPECT_EQ(errorOf("r = tr", options), "shader line 1: unknown name 'tr'");
    EXPECT_EQ(errorOf("\nr = u", options),
              "shader line 2: the uniforms table can only be indexed with a string key");
    EXPECT_EQ(errorOf("r = u[1]", options), "shader line 1: only string keys are supported inside a shader");
    EXPECT_EQ(errorOf("local u = 1; r = u.x", options),
              "shader line 1: indexing 'u' is not supported inside a shader");
}

TEST(ShaderCompiler, FaultsHaveTheirWordsAndLine) {
    const std::pair<const char*, const char*> faults[] = {
        {"r = 'a\n'", "unterminated string"},
        {"r = 1 @ 2", "unexpected character '@'"},
        {"r = 1 ~ 2", "unexpected character '~'"},
        {"end", "unexpected 'end'"},
        {"if a r = 1", "expected 'end' to close 'if'"},
        {"if a else else end", "expected 'end' to close 'if'"},
        {"do r = 1", "expected 'end' to close 'do'"},
        {"local 1", "expected a name after 'local'"},
        {"return 1, 2, 3, 4, 5", "return accepts at most r, g, b, a"},
        {"while a", "'while' is not supported inside a shader"},
        {"for i = 1", "'for' is not supported inside a shader"},
        {"repeat", "'repeat' is not supported inside a shader"},
        {"function f()", "'function' is not supported inside a shader"},
        {"r, 2 = 1", "expected a name but found '2'"},
        {"width()", "calling 'width' as a statement is not supported inside a shader"},
        {"r + 1", "expected '=' but found '+'"},
        {"r", "expected '=' but found 'end of line'"},
        {"r, g = 1", "assignment has 2 targets but 1 values"},
        {"a = 1 b = 2", "unexpected 'b' after statement"},
        {"1 = r", "unexpected '1'"},
        {"r = ", "unexpected 'end of line' in expression"},
        {"r = #g", "unexpected '#' in expression"},
        {"r = (1", "expected ')' but found 'end of line'"},
        {"r = math.random()", "math.random is not supported inside a shader"},
        {"r = math['sampleR'](1, 1)", "math.sampleR is not supported inside a shader"},
        {"r = math.nothing", "math.nothing is not supported inside a shader"},
        {"r = math.abs", "expected a math function"},
        {"r = math.5", "unexpected '.5' after statement"},
        {"r = math[5]", "only string keys are supported inside a shader"},
        {"r = math['abs'", "expected ']' but found 'end of line'"},
        {"r = math.;", "expected a name after '.'"},
        {"r = foo(1)", "unknown function 'foo'"},
        {"local abs = 1; r = abs(1)", "unknown function 'abs'"},
        {"r = foo[1]", "indexing 'foo' is not supported inside a shader"},
        {"r = min(1, 2, 3, 4, 5)", "min expects 2 argument(s)"},
        {"r = random(1)", "random expects 0 argument(s)"},
        {"x = 1", "cannot assign to built-in 'x'"},
        {"VESPER_GREY_R = 1", "cannot assign to built-in 'VESPER_GREY_R'"},
        {"pi = 3", "cannot assign to 'pi'"},
        {"tr = tr", "cannot assign to uniform 'tr'"},
    };
    for (const auto& [source, words] : faults)
        EXPECT_EQ(errorOf(std::string("@@\n\n") + source), std::string("shader line 3: ") + words) << source;
    EXPECT_EQ(errorOf("if a"), "shader line 1: expected 'end' to close 'if'");
    EXPECT_EQ(errorOf("r = math.sampleG(1, 1) + math.pi + math.huge + math.abs(1)"), "none");
}

TEST(ShaderCompiler, HostileTextIsRefused) {
    const std::string tooDeep = "shader line 1: shader is nested too deeply";
    for (const char* opening : {"(", "-", "not ", "2^", "abs(", "1 + ("})
        EXPECT_EQ(errorOf("r = " + repeated(opening, 100000)), tooDeep) << opening;
    EXPECT_EQ(errorOf(repeated("if a ", 100000)), tooDeep);
    EXPECT_EQ(errorOf(repeated("do ", 100000)), tooDeep);
    EXPECT_EQ(errorOf("r = " + repeated("(", 150) + "1" + repeated(")", 150)), "none");

    EXPECT_EQ(errorOf("if a " + repeated("r = g;", 35000) + "end"), "shader line 1: shader is too long");
    EXPECT_EQ(compiled(repeated("r = g;", 35000))->instructions.size(), 70001u);
    EXPECT_EQ(errorOf("if a r = 1 " + repeated("elseif g ", 21000) + "end"), "none");
    EXPECT_EQ(errorOf("if a r = 1 " + repeated("elseif g ", 33000) + "end"),
              "shader line 1: shader is too long");

    std::string names;
    for (int i = 0; i < 40000; ++i) names += "local n = " + std::to_string(i % 7) + ";";
    EXPECT_EQ(errorOf(names), "shader line 1: shader uses too many variables");
    EXPECT_EQ(errorOf("r = 1" + repeated(" + 1", 32700)), "none");
    EXPECT_EQ(errorOf("\nr = 1" + repeated(" + 1", 32768) + "\n"),
              "shader line 3: shader uses too many registers");
    EXPECT_EQ(errorOf("r = 1" + repeated(" + 1", 100000)), "shader line 1: shader uses too many registers");
}

}  // namespace
}  // namespace kelmora::plush_shader
