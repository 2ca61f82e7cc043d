#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <random>
#include <string>

#include "support/guest_run.h"

// Programs made at random print the same whichever way they run: from their text, from an image, and with
// every local variable in a box that is made anew each time its declaration runs.
namespace kelmora {
namespace {

class ProgramMaker {
public:
    explicit ProgramMaker(std::uint32_t seed) : generator_(seed) {}

    std::string make() {
        begin();
        block(4, 3);
        text_ += "print(pcall(function() return a, b, g, #c, c[1], c.k end))\n";
        return text_;
    }

    // Each in a call of its own, as most of them fail.
    std::string makeExpressions(int count) {
        begin();
        for (int i = 0; i < count; ++i)
            text_ += "print(pcall(function() return " + expression(4) + " end))\n";
        return text_;
    }

private:
    void begin() {
        // Addresses are not the same twice, and texts with them not in the same order.
        text_ =
            "local function plain(v) local text = tostring(v) return text:find('0x') and type(v) or v end\n"
            "local a, b, c = 1, 'x', {1, 2, k = 3}\ng = 5\n";
        names_ = {"a", "b", "c", "g"};
    }
    std::size_t draw(std::size_t count) { return generator_() % count; }
    std::string name() { return names_[draw(names_.size())]; }

    std::string expression(int depth) {
        static constexpr const char* literals[] = {"1",   "2",    "-3",    "0.5", "'s'",
                                                   "nil", "true", "false", "{}",  "7"};
        static constexpr const char* operators[] = {" + ",  " - ", " * ",  " % ",  " / ",   " .. ",
                                                    " == ", " < ", " >= ", " ~= ", " and ", " or "};
        if (depth == 0 || draw(4) == 0) return draw(2) == 0 ? name() : literals[draw(std::size(literals))];
        switch (draw(9)) {
            case 0:
                return "(" + expression(depth - 1) + ")";
            case 1:
                return "not " + expression(depth - 1);
            case 2:
                return "c[" + expression(depth - 1) + "]";
            case 3:
                return "c.k";
            case 4:
                return "{" + expression(depth - 1) + ", k = " + expression(depth - 1) + "}";
            case 5:
                return "(function(p, q) " + name() + " = p return q, " + name() + " end)(" +
                       expression(depth - 1) + ", " + expression(depth - 1) + ")";
            case 6:
                return "type(" + expression(depth - 1) + ")";
            default: {
                const std::string operation = operators[draw(std::size(operators))];
                const std::string plain = operation == " .. " ? "plain" : "";
                return "(" + plain + "(" + expression(depth - 1) + ")" + operation + plain + "(" +
                       expression(depth - 1) + "))";
            }
        }
    }

    void block(int statements, int depth) {
        const std::size_t visible = names_.size();
        for (int i = 0; i < statements; ++i) statement(depth);
        names_.resize(visible);
    }

    void statement(int depth) {
        switch (draw(depth > 0 ? 11 : 6)) {
            case 0: {
                const std::string fresh = "v" + std::to_string(++count_);
                text_ += "local " + fresh + ", w = " + expression(2) + "\n";
                names_.push_back(fresh);
                return;
            }
            case 1:
                text_ += "c[" + expression(1) + "] = " + expression(2) + "\n";
                return;
            case 2:
                text_ += name() + ", " + name() + " = " + expression(2) + ", " + expression(2) + "\n";
                return;
            case 3: {
                const std::string target = name();
                text_ += target + " = plain(" + target + ") .. plain(" + expression(1) + ")\n";
                return;
            }
            case 4:
                text_ += "print(type(" + expression(2) + "), tostring(" + name() + "):sub(1, 5))\n";
                return;
            case 5:
                text_ += name() + " = " + expression(3) + "\n";
                return;
            case 6:
                text_ += "if " + expression(2) + " then\n";
                block(2, depth - 1);
                text_ += "else\n";
                block(1, depth - 1);
                text_ += "end\n";
                return;
            case 7:
                loop("i", " = 1, 3 do\n", depth);
                return;
            case 8:
                loop("k", " in pairs({4, x = 5}) do\n", depth);
                return;
            case 9:
                text_ += "print(pcall(function()\n";
                block(3, depth - 1);
                text_ += "return " + name() + ", type(" + expression(2) + ") end) and 'ok')\n";
                return;
            default: {
                const std::string closure = "f" + std::to_string(++count_);
                text_ += "local " + closure + " = {}\nfor i = 1, 2 do local kept = i " + closure +
                         "[i] = function(p) kept = kept + 1 " + name() + " = p return kept end end\nprint(" +
                         closure + "[1](1), " + closure + "[1](2), " + closure + "[2](" + expression(1) +
                         "))\n";
            }
        }
    }
    void loop(const std::string& letter, const std::string& range, int depth) {
        const std::string variable = letter + std::to_string(++count_);
        text_ += "for " + variable + range;
        names_.push_back(variable);
        block(2, depth - 1);
        if (draw(3) == 0) text_ += "if " + expression(1) + " then break end\n";
        names_.pop_back();
        text_ += "end\n";
    }

    std::mt19937 generator_;
    std::string text_;
    std::vector<std::string> names_;
    int count_ = 0;
};

// Addresses are not the same twice.
std::string withoutAddresses(const std::string& text) {
    std::string out;
    for (std::size_t at = 0; at < text.size(); ++at) {
        out += text[at];
        if (!out.ends_with("0x")) continue;
        while (at + 1 < text.size() && std::isxdigit(static_cast<unsigned char>(text[at + 1]))) ++at;
    }
    return out;
}

// With KELMORA_LUA_SEEDS=100000 a hundred thousand programs and ten million expressions.
unsigned long seedCount(unsigned long otherwise) {
    const char* wanted = std::getenv("KELMORA_LUA_SEEDS");
    return wanted ? std::strtoul(wanted, nullptr, 10) : otherwise;
}

// Whether it ended without an error.
bool runsTheSame(const std::string& source) {
    const GuestLanguage language = luaLanguage();
    const GuestOutcome first = language.ways[0].run(source, "made");
    for (std::size_t way = 1; way < language.ways.size(); ++way) {
        const GuestOutcome other = language.ways[way].run(source, "made");
        EXPECT_EQ(withoutAddresses(first.output), withoutAddresses(other.output)) << language.ways[way].name;
        EXPECT_EQ(first.error, other.error) << language.ways[way].name;
    }
    return first.error.empty();
}

TEST(LuaAgreement, ProgramsRunTheSameInAllWays) {
    const unsigned long seeds = seedCount(600);
    std::size_t completed = 0;
    for (unsigned long seed = 0; seed < seeds; ++seed) {
        const std::string source = ProgramMaker(static_cast<std::uint32_t>(seed)).make();
        completed += runsTheSame(source) ? 1u : 0u;
        if (HasFailure()) FAIL() << "seed " << seed << "\n" << source;
    }
    EXPECT_GT(completed, seeds / 20);
}

TEST(LuaAgreement, ExpressionsGiveTheSameInAllWays) {
    const unsigned long seeds = seedCount(60);
    for (unsigned long seed = 0; seed < seeds; ++seed) {
        const std::string source = ProgramMaker(static_cast<std::uint32_t>(seed)).makeExpressions(100);
        EXPECT_TRUE(runsTheSame(source));
        if (HasFailure()) FAIL() << "seed " << seed << "\n" << source;
    }
}

}  // namespace
}  // namespace kelmora
