#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "script/vesper_script.h"
#include "support/capture_host.h"

// Random expressions and programs have to print and fail alike whether expressions are compiled or walked
// token by token, and on both executors. KELMORA_AGREEMENT_SEEDS runs more of them than a test run does.
namespace kelmora {
namespace {

class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    std::string expression(int depth) {
        if (depth <= 0 || chance(15)) return atom();
        switch (pick(11)) {
            case 0:
            case 1:
            case 2:
                return expression(depth - 1) + oneOf(binaryOperators) + expression(depth - 1);
            case 3:
                return "(" + expression(depth - 1) + ")" +
                       (chance(25) ? "[" + expression(depth - 2) + "]" : "");
            case 4:
                return oneOf(prefixes) + expression(depth - 1);
            case 5:
                return oneOf(names) + "[" + expression(depth - 2) + "]";
            case 6:
                return oneOf(inFunction_ ? leafFunctions : functions) + "(" + expression(depth - 1) + ", " +
                       expression(depth - 2) + ")";
            case 7:
                return constructor(depth);
            case 8:
                return oneOf(callees) + "(" + arguments(depth) + ")";
            case 9:
                return oneOf({"r(3)", "r(x % 5)", "r(4) + r(2)", "w(r(3))", "w(x)", "swap(x)"});
            default:
                return library(depth);
        }
    }

    std::string program() {
        std::string source =
            std::string(commonFunctions) +
            "function f(a, b)\n    calls += 1\n    if calls > 200\n        error(\"too many calls\")\n    "
            "end\n"
            "    return a\nend\n"
            "function g(a, b)\n    calls += 1\n    x = b\n    return a, b\nend\n"
            "function h(p, x)\n    return y\nend\n"
            "function v(p, ...)\n    local rest = {...}\n    return ..., rest\nend\n"
            "calls = 0\nx = 3\ny = 2.5\ns = \"text\"\nt = {1, 2, k = \"v\", m = g}\na = [4, 5, 6]\nkept = "
            "[t, a]\n"
            "native n = 7\nexternal e = 8\n";
        const int count = 3 + pick(5);
        for (int i = 0; i < count; ++i) source += statement(3, "");
        return source + "print(calls, x, y, s, t, a, n, z, e#0)\n";
    }

    // A recursion, one with locals and a loop around its calls, one that changes what is called, and a
    // method.
    static constexpr const char* commonFunctions =
        "function r(n)\n    if n < 2\n        return n\n    end\n    return r(n - 1) + r(n - 2)\nend\n"
        "function w(p)\n    local loc = p\n    local sum = 0\n    for i = 1, 2\n        sum += i * r(i + 1)\n"
        "    end\n    return [sum, loc, p]\nend\n"
        "function swap(p)\n    f, t[\"m\"] = t[\"m\"], f\n    return p\nend\n"
        "function string[\"with\"](text, more)\n    x = more\n    return text\nend\n";

private:
    using Choices = std::vector<const char*>;
    inline static const Choices binaryOperators{" + ",  " - ",   " * ",  " / ",  " \\ ", " % ",
                                                " ^ ",  " == ",  " != ", " < ",  " > ",  " <= ",
                                                " >= ", " and ", " or ", " && ", " || ", " + "};
    inline static const Choices prefixes{"not ", "-", "#", "!", "+", "not not "};
    inline static const Choices names{"x",       "y", "s",   "t",   "a",   "n",
                                      "missing", "i", "x#1", "n#2", "e#0", "loc"};
    inline static const Choices functions{"f", "g", "h", "v", "missing", "select", "math[\"min\"]"};
    // Inside a body nothing calls itself: how deep a recursion gets differs between the ways of running.
    inline static const Choices leafFunctions{"f", "g", "v", "missing"};
    inline static const Choices callees{
        "t[\"m\"]", "s[\"with\"]",     "s[\"upper\"]",   "a[1]",      "(f)", "f",
        "v",        "\"b\"[\"with\"]", "missing[\"m\"]", "[v, f][1]", "g"};
    inline static const Choices atoms{"0",     "1",   "2",     "3",    "-1",   "1.5",   "0.1", "2147483647",
                                      "\"a\"", "'2'", "\"k\"", "\"\"", "true", "flase", "not", "{}",
                                      "[]",    "x",   "y",     "s",    "t",    "a",     "i",   "loc"};
    inline static const Choices targets{"x",         "y",    "s",        "t[1]",      "t[\"k\"]",
                                        "a[2]",      "a[x]", "z",        "t[s][x]",   "t[\"k\"][1]",
                                        "local loc", "n#2",  "native n", "external e"};
    inline static const Choices assignments{
        " = ", " = ", " = ", " += ", " -= ", " *= ", " /= ", " \\= ", " %= "};

    int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    bool chance(int percent) { return pick(100) < percent; }
    std::string oneOf(const Choices& choices) { return choices[random_() % choices.size()]; }
    std::string atom() {
        if (chance(2)) return "...";
        return chance(2) ? oneOf({"=", ")", "1.2.3", "x y", ","}) : oneOf(atoms);
    }

    std::string arguments(int depth) {
        std::string list;
        for (int i = pick(4); i > 0; --i) list += expression(depth - 2) + (i > 1 ? ", " : "");
        return list;
    }
    std::string constructor(int depth) {
        const std::string first = expression(depth - 2);
        const std::string second = expression(depth - 2);
        switch (pick(7)) {
            case 0:
                return "{" + first + ", k = " + second + "}";
            case 1:
                return "{" + first + ", " + second + "}";
            case 2:
                return "{\"a b\": " + first + ", 2 = " + second + ", }[" + expression(depth - 2) + "]";
            case 3:
                return "{[" + first + "] = " + second + ", " + expression(depth - 2) + "}";
            case 4:
                return "[" + first + ", " + second + "][" + expression(depth - 2) + "]";
            default:
                return "[" + first + ", " + second + "]";
        }
    }
    std::string library(int depth) {
        switch (pick(5)) {
            case 0:
                return "toString(" + expression(depth - 1) + ")";
            case 1:
                return "pcall(f, " + expression(depth - 1) + ")";
            case 2:
                return "pcall(error, " + expression(depth - 1) + ")";
            case 3:
                return "string[\"sub\"](s, " + expression(depth - 2) + ", 2)";
            default:
                return "s[\"upper\"]()";
        }
    }

    std::string block(int depth, const std::string& indent) {
        std::string body;
        for (int i = pick(3); i >= 0; --i) body += statement(depth - 1, indent + "    ");
        return body;
    }
    std::string declaration(int depth, const std::string& in) {
        inFunction_ = true;
        std::string body;
        if (pick(2) == 0) {
            for (int i = pick(3); i > 0; --i)
                body += in + "    if " + expression(1) + "\n" + in + "        return " + expression(2) +
                        "\n" + in + "    end\n";
        } else {
            body = block(depth, in);
        }
        const std::string result = expression(2);
        inFunction_ = false;
        return in + "function h(p, x)\n" + body + in + "    return " + result + "\n" + in + "end\n";
    }
    std::string statement(int depth, const std::string& indent) {
        const std::string& in = indent;
        if (depth <= 0) return in + oneOf(targets) + oneOf(assignments) + expression(2) + "\n";
        switch (pick(11)) {
            case 0:
                return in + "if " + expression(2) + "\n" + block(depth, in) + in + "elseif " + expression(1) +
                       "\n" + block(depth, in) + in + "else\n" + block(depth, in) + in + "end\n";
            case 1:
                return in + "for i = " + oneOf({"1", "0", "2", "2.5", "s", "not"}) + ", 3\n" +
                       block(depth, in) + in + "end\n";
            case 2:
                return in + "for i, v in pairs(" + expression(1) + ")\n" + block(depth, in) + in + "end\n";
            case 3:
                return in + "local w = 0\n" + in + "while w < 2 and (" + expression(1) + " or true)\n" + in +
                       "    w += 1\n" + block(depth, in) + in + "end\n";
            case 4:
                return in + "print(" + expression(2) + ", " + expression(2) + ")\n";
            case 5:
                return inFunction_ ? in + "z = p\n" : declaration(depth, in);
            case 6:
                return inFunction_ ? in + "x = p\n"
                                   : in + "print(pcall(h, " + expression(1) + ", " + expression(1) + "))\n";
            case 7:
                return in + "x, y = " + expression(2) + ", " + expression(1) + "\n";
            case 8:
                return in + "x, z = g(" + expression(1) + ", " + expression(1) + ")\n";
            case 9:
                return in + expression(2) + "\n";
            default:
                return in + oneOf(targets) + oneOf(assignments) + expression(3) + "\n";
        }
    }

    std::mt19937 random_;
    bool inFunction_ = false;
};

enum class Way { Compiled, Walked, Direct, Coroutine };

std::string run(const std::string& source, Way way) {
    CaptureHost host;
    VesperScript script(host);
    script.setFastExpressions(way != Way::Walked);
    script.setStepLimit(20000);
    try {
        if (way == Way::Direct) {
            script.executeBlock(source);
        } else if (way == Way::Coroutine) {
            script.setStepLimit(200000);
            script.runScript("decay " + source + "body()\nfor turn = 1, 60000\n    at = turn\nend\n");
        } else {
            script.runScript(source);
        }
    } catch (const std::exception& error) {
        host.output += std::string("failed: ") + error.what();
    }
    // Containers that hold themselves would stay.
    const std::string output = host.output;
    script.setStepLimit(100);
    try {
        script.runScript("t, a = kept[1], kept[2]\nt[1], t[\"k\"], a[1], a[2], a[3] = 0, 0, 0, 0, 0\n");
    } catch (const std::exception&) {
    }
    return output;
}

// As the body of a function: run in one go or a line at a time beside the main script.
std::string asBody(const std::string& source) {
    return "function body()\n" + source + "end\n";
}

unsigned seedCount(unsigned usual) {
    const char* asked = std::getenv("KELMORA_AGREEMENT_SEEDS");
    return asked ? static_cast<unsigned>(std::strtoul(asked, nullptr, 10)) : usual;
}

TEST(Agreement, ExpressionsGiveTheSameHoweverTheyRun) {
    const unsigned seeds = seedCount(1500);
    for (unsigned seed = 0; seed < seeds; ++seed) {
        Generator generator(seed);
        std::string source =
            std::string(Generator::commonFunctions) +
            "function f(a, b)\n    x = b\n    return a\nend\nfunction g(a, b)\n    return a, b\nend\n"
            "function v(a, ...)\n    return ...\nend\n"
            "x = 3\ny = 2.5\ns = \"text\"\nt = {1, 2, k = \"v\", m = g}\na = [4, 5, 6]\nkept = [t, a]\n";
        for (int i = 0; i < 8; ++i) {
            const std::string expression = generator.expression(4);
            source +=
                "function q()\n    return " + expression + "\nend\nprint(pcall(q))\nz = " + expression + "\n";
            if (i % 4 == 3) source += "x = 3\n";
        }
        const std::string compiled = run(source, Way::Compiled);
        ASSERT_EQ(compiled, run(source, Way::Walked)) << "seed " << seed << "\n" << source;
        ASSERT_EQ(compiled, run(source, Way::Direct)) << "seed " << seed << "\n" << source;
    }
}

TEST(Agreement, ProgramsDoTheSameHoweverTheyRun) {
    const unsigned seeds = seedCount(1000);
    for (unsigned seed = 0; seed < seeds; ++seed) {
        const std::string source = Generator(seed + 1'000'000).program();
        const std::string compiled = run(source, Way::Compiled);
        if (compiled.find("Step limit") != std::string::npos) continue;
        ASSERT_EQ(compiled, run(source, Way::Walked)) << "seed " << seed << "\n" << source;
        ASSERT_EQ(compiled, run(source, Way::Direct)) << "seed " << seed << "\n" << source;
    }
}

TEST(Agreement, ProgramsDoTheSameAsBodiesOfCoroutines) {
    const unsigned seeds = seedCount(500);
    for (unsigned seed = 0; seed < seeds; ++seed) {
        const std::string body = asBody(Generator(seed + 2'000'000).program());
        const std::string called = run(body + "body()\n", Way::Compiled);
        if (called.find("Step limit") != std::string::npos) continue;
        ASSERT_EQ(called, run(body, Way::Coroutine)) << "seed " << seed << "\n" << body;
    }
}

}  // namespace
}  // namespace kelmora
