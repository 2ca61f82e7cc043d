#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

#include "support/guest_run.h"
#include "support/script_run.h"

// Programs made at random and written in all three languages print the same: arithmetic of whole numbers,
// texts, lists, branches, loops, functions and recursion, as far as the languages agree on them.
namespace kelmora {
namespace {

enum class Language { Script, Lua, Rwby };
constexpr Language languages[] = {Language::Script, Language::Lua, Language::Rwby};

// A source in each language, written at once.
class SharedProgram {
public:
    explicit SharedProgram(std::uint32_t seed) : random_(seed) {}

    void make() {
        for (int i = 0; i < 3; ++i) makeFunction(i);
        line("a = 3", "a = 3", "a = 3");
        line("b = 7", "b = 7", "b = 7");
        line("t = \"t\"", "t = \"t\"", "t = \"t\"");
        line("list = [5, 0, 9]", "list = {5, 0, 9}", "list = [5, 0, 9]");
        functions_ = 3;
        for (int i = 0; i < 6; ++i) statement(2);
        same("print(a, b, t)");
        const Text first = element("0");
        line("print(" + first.script + ")", "print(" + first.lua + ")", "print(" + first.rwby + ")");
    }
    const std::string& source(Language language) const {
        return sources_[static_cast<std::size_t>(language)];
    }

private:
    struct Text {
        std::string script;
        std::string lua;
        std::string rwby;
    };

    std::uint32_t draw(std::uint32_t below) { return static_cast<std::uint32_t>(random_()) % below; }
    void line(const std::string& script, const std::string& lua, const std::string& rwby) {
        sources_[0] += script + "\n";
        sources_[1] += lua + "\n";
        sources_[2] += rwby + "\n";
    }
    void same(const std::string& text) { line(text, text, text); }

    // A place of the list; scripts and Lua count from 1, Rwby from 0.
    static Text element(const std::string& place) {
        const std::string at = "(" + place + ") % 3";
        return {"list[" + at + " + 1]", "list[" + at + " + 1]", "list[" + at + "]"};
    }
    std::string name() { return inFunction_ ? (draw(2) == 0 ? "p" : "q") : (draw(2) == 0 ? "a" : "b"); }

    // Whole numbers from 0 on, far from 32 bits: the languages differ beyond.
    std::string number(int depth) {
        if (depth == 0) return draw(2) == 0 ? name() : std::to_string(draw(100));
        switch (draw(functions_ > 0 ? 6 : 5)) {
            case 0:
                return "(" + number(depth - 1) + " + " + number(depth - 1) + ") % 1009";
            case 1:
                return "(" + number(depth - 1) + ") % 31 * ((" + number(depth - 1) + ") % 37)";
            case 2:
                return "(5000 - (" + number(depth - 1) + ") % 997)";
            case 3:
                return "(" + number(depth - 1) + ") % " + std::to_string(1 + draw(20));
            case 4:
                return number(0);
            default:
                return "f" + std::to_string(draw(functions_)) + "((" + number(depth - 1) + ") % 100, " +
                       number(0) + ")";
        }
    }
    std::string condition(int depth) {
        static constexpr const char* signs[] = {" < ", " > ", " <= ", " >= ", " == "};
        if (depth > 0 && draw(3) == 0)
            return "(" + condition(depth - 1) + (draw(2) == 0 ? " and " : " or ") + condition(depth - 1) +
                   ")";
        return "(" + number(1) + signs[draw(5)] + number(1) + ")";
    }

    void makeFunction(int index) {
        const std::string header = "f" + std::to_string(index) + "(p, q)";
        functions_ = static_cast<std::uint32_t>(index);
        inFunction_ = true;
        line("function " + header, "function " + header, "def " + header);
        if (draw(2) == 0) {
            beginIf("p > 0");
            same("return " + std::string("f") + std::to_string(index) + "(p - 1, (q + " + number(0) +
                 ") % 500)");
            same("end");
        }
        if (draw(2) == 0) statement(1);
        same("return " + number(2));
        same("end");
        inFunction_ = false;
    }
    void beginIf(const std::string& test) { line("if " + test, "if " + test + " then", "if " + test); }

    void statement(int depth) {
        switch (draw(depth > 0 ? 7 : 4)) {
            case 0: {
                if (inFunction_) return same(name() + " = " + number(2));
                const std::string more = number(1);
                return line("t = t + \"x\" + " + more, "t = t .. \"x\" .. (" + more + ")",
                            "t = t + \"x\" + (" + more + ")");
            }
            case 1: {
                const Text place = element(number(1));
                const std::string value = number(1);
                if (inFunction_) return same(name() + " = " + value);
                return line(place.script + " = " + value, place.lua + " = " + value,
                            place.rwby + " = " + value);
            }
            case 2: {
                if (inFunction_) return same(name() + " = " + number(1));
                const Text place = element(number(1));
                const std::string target = name();
                return line(target + " = " + place.script, target + " = " + place.lua,
                            target + " = " + place.rwby);
            }
            case 3:
                return same(name() + " = " + number(2));
            case 4:
            case 5:
                beginIf(condition(2));
                statement(depth - 1);
                if (draw(2) == 0) {
                    same("else");
                    statement(depth - 1);
                }
                return same("end");
            default: {
                const std::string counter = "n" + std::to_string(loops_++);
                same(counter + " = 0");
                const std::string test = counter + " < " + std::to_string(1 + draw(4));
                line("while " + test, "while " + test + " do", "while " + test);
                same(counter + " = " + counter + " + 1");
                statement(depth - 1);
                same("end");
            }
        }
    }

    std::mt19937 random_;
    std::string sources_[3];
    std::uint32_t functions_ = 0;
    bool inFunction_ = false;
    int loops_ = 0;
};

std::string outputOf(Language language, const std::string& source) {
    if (language != Language::Script) {
        const GuestOutcome outcome =
            (language == Language::Lua ? luaLanguage() : rwbyLanguage()).ways[0].run(source, "shared");
        return outcome.output + outcome.error;
    }
    const ScriptOutcome outcome = runTestScript(source, "shared.vs", ScriptWay::Text);
    std::string text;
    for (const std::string& printed : outcome.output) text += printed + "\n";
    return text + outcome.error;
}

TEST(SharedPrograms, PrintTheSameInAllLanguages) {
    const char* wanted = std::getenv("KELMORA_SHARED_SEEDS");
    const unsigned long seeds = wanted ? std::strtoul(wanted, nullptr, 10) : 300;
    for (unsigned long seed = 0; seed < seeds; ++seed) {
        SharedProgram program(static_cast<std::uint32_t>(seed));
        program.make();
        const std::string expected = outputOf(Language::Script, program.source(Language::Script));
        ASSERT_NE(expected.find('\n'), std::string::npos) << expected;
        for (const Language language : languages)
            ASSERT_EQ(outputOf(language, program.source(language)), expected)
                << "seed " << seed << "\n"
                << program.source(Language::Script) << "-----\n"
                << program.source(language);
    }
}

}  // namespace
}  // namespace kelmora
