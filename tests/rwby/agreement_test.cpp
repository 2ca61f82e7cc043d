#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <utility>

#include "support/rwby_run.h"

// Programs made up at random do the same from text and from an image, with fast forms and without, as inner
// code and as plain instructions: every line printed, every error with its place.
namespace kelmora {
namespace {

using vesper::ruby::ExecutionMode;

class ProgramMaker {
public:
    explicit ProgramMaker(std::uint32_t seed) : random_(seed) {}

    // Sources that run one after another in one machine: where one fails the next goes on.
    std::vector<std::string> make() {
        std::vector<std::string> sources;
        for (int i = 0; i < 4; ++i) makeFunction();
        sources.push_back(std::exchange(text_, {}));
        for (int i = 0; i < 12; ++i) {
            statement(2, "");
            if (draw(3) == 0) statement(2, "");
            sources.push_back(std::exchange(text_, {}));
        }
        sources.push_back("print(a, b, c, d)\n");
        return sources;
    }

    // Functions of one expression, which have a fast form more often than not, called with all kinds of
    // values.
    std::vector<std::string> makeExpressions(int count) {
        for (int i = 0; i < 4; ++i) makeFunction();
        std::vector<std::string> sources{std::exchange(text_, {})};
        for (int i = 0; i < count; ++i) {
            line("", "def e(p, q)");
            if (draw(4) == 0) line("", "  if " + expression(2) + " then error(\"refused\") end");
            line("", "  return " + expression(3));
            line("", "end");
            line("", "print(pcall(e, " + leaf() + ", " + leaf() + "))");
            sources.push_back(std::exchange(text_, {}));
        }
        return sources;
    }

private:
    std::uint32_t draw(std::uint32_t below) { return static_cast<std::uint32_t>(random_()) % below; }
    template <std::size_t count>
    const char* pick(const char* const (&choices)[count]) {
        return choices[draw(count)];
    }
    void line(const std::string& indent, const std::string& text) { text_ += indent + text + "\n"; }

    std::string name() {
        static constexpr const char* names[] = {"a", "b", "c", "d", "p", "q", "unknown"};
        return names[draw(draw(20) == 0 ? 7 : 6)];
    }
    std::string leaf() {
        static constexpr const char* literals[] = {
            "0", "1", "2", "3", "-1", "7", "0.5", "2.5", "9223372036854775807", "\"\"", "\"abc\""};
        static constexpr const char* oddities[] = {"nil", "false", "true", "[1, 2]", "[]"};
        if (draw(12) == 0) return pick(oddities);
        return draw(5) < 3 ? name() : pick(literals);
    }
    std::string expression(int depth) {
        static constexpr const char* operators[] = {"+", "-",  "*",  "/",   "%",  "==", "!=", "<",
                                                    ">", "<=", ">=", "and", "or", "&&", "||", "+"};
        if (depth == 0) return leaf();
        switch (draw(12)) {
            case 0:
                return "-" + expression(depth - 1);
            case 1:
                return "not " + expression(depth - 1);
            case 2:
                return "[" + expression(depth - 1) + ", " + expression(depth - 1) + "]";
            case 3:
                return name() + "[" + expression(depth - 1) + "]";
            case 4:
                return "to_s(" + expression(depth - 1) + ")";
            case 5:
            case 6:
                return call(depth);
            case 7:
                return "pcall(" + std::string(pick({"f0", "f1", "f2", "f3"})) + ", " + expression(depth - 1) +
                       ")";
            default:
                return "(" + expression(depth - 1) + " " + pick(operators) + (draw(8) == 0 ? "\n" : " ") +
                       expression(depth - 1) + ")";
        }
    }
    std::string call(int depth) {
        std::string text = "f" + std::to_string(draw(4)) + "(" + expression(depth - 1);
        if (draw(6) == 0) text += ", " + expression(depth - 1);
        return text + ")";
    }

    void makeFunction() {
        line("", "def f" + std::to_string(functions_++) + "(p" + (draw(8) == 0 ? ", q" : "") + ")");
        switch (draw(3)) {
            case 0:
                line("", "  return " + expression(3));
                break;
            case 1:
                line("", "  if " + expression(2) + " then error(\"refused\") end");
                line("", "  return " + expression(2));
                break;
            default:
                for (std::uint32_t i = draw(4) + 1; i > 0; --i) statement(2, "  ");
                line("", "  return " + expression(2));
        }
        line("", "end");
    }

    void statement(int depth, const std::string& indent) {
        switch (draw(depth > 0 ? 9 : 6)) {
            case 0:
                line(indent, "print(" + expression(2) + ")");
                break;
            case 1:
                // A container that came to hold itself would never be freed.
                line(indent, name() + "[" + expression(1) +
                                 "] = " + (draw(3) == 0 ? name() + " == 1" : "to_s(" + expression(1) + ")"));
                break;
            case 2:
                line(indent, expression(2));
                break;
            case 6:
            case 7:
                branch(depth, indent);
                break;
            case 8:
                loop(depth, indent);
                break;
            default:
                line(indent, name() + " = " + expression(2));
        }
    }
    void branch(int depth, const std::string& indent) {
        line(indent, "if " + expression(2));
        statement(depth - 1, indent + "  ");
        if (draw(2) == 0) {
            line(indent, "elsif " + expression(1) + " then");
            statement(depth - 1, indent + "  ");
        }
        if (draw(2) == 0) {
            line(indent, "else");
            statement(depth - 1, indent + "  ");
            if (draw(4) == 0) line(indent, "  return " + expression(1));
        }
        line(indent, "end");
    }
    void loop(int depth, const std::string& indent) {
        const std::string counter = "i" + std::to_string(loops_++);
        line(indent, counter + " = 0");
        const std::string test = counter + pick({" < ", " != ", " <= "}) + std::to_string(draw(5));
        line(indent, "while " + (draw(3) == 0 ? test + " and " + expression(1) : test));
        line(indent, "  " + counter + " = " + counter + " + 1");
        statement(depth - 1, indent + "  ");
        line(indent, "end");
    }

    std::mt19937 random_;
    std::string text_ = "a = 5\nb = \"text\"\nc = [1, [2], \"x\"]\nd = map_new()\nd[\"k\"] = 1\n";
    int functions_ = 0;
    int loops_ = 0;
};

// With KELMORA_RWBY_SEEDS=100000 a hundred thousand programs and ten million expressions.
std::uint32_t seedCount(std::uint32_t otherwise) {
    const char* wanted = std::getenv("KELMORA_RWBY_SEEDS");
    return wanted ? static_cast<std::uint32_t>(std::atoi(wanted)) : otherwise;
}

void expectSame(const GuestOutcome& plain, const GuestOutcome& other, const char* way) {
    EXPECT_EQ(other.output, plain.output) << way;
    EXPECT_EQ(other.error, plain.error) << way;
}

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++count;
    return count;
}

GuestOutcome expectAgreement(const std::vector<std::string>& sources, std::uint64_t steps) {
    const GuestOutcome plain = runRwby(sources, RwbyForm::Text, ExecutionMode::PlainInstructions, steps);
    expectSame(plain, runRwby(sources, RwbyForm::Text, ExecutionMode::Full, steps), "full");
    expectSame(plain, runRwby(sources, RwbyForm::Text, ExecutionMode::WithoutFastForms, steps),
               "without fast forms");
    expectSame(plain, runRwby(sources, RwbyForm::Image, ExecutionMode::Full, steps), "image");
    return plain;
}

std::string joined(const std::vector<std::string>& sources) {
    std::string all;
    for (const std::string& source : sources) all += "-----\n" + source;
    return all;
}

TEST(RwbyAgreement, AllWaysToRunAgree) {
    constexpr std::uint64_t steps = 200;
    std::size_t failures = 0;
    std::size_t runs = 0;
    const std::uint32_t count = seedCount(1000);
    for (std::uint32_t seed = 0; seed < count; ++seed) {
        const std::vector<std::string> sources = ProgramMaker(seed).make();
        runs += sources.size();
        failures += countOf(expectAgreement(sources, steps).output, "failed: ");
        if (HasFailure()) FAIL() << "seed " << seed << "\n" << joined(sources);
    }
    // Both ends of a source are met often.
    EXPECT_GT(failures, runs / 10);
    EXPECT_LT(failures, runs - runs / 10);
}

TEST(RwbyAgreement, ExpressionsAgree) {
    const std::uint32_t count = seedCount(60);
    for (std::uint32_t seed = 0; seed < count; ++seed) {
        const std::vector<std::string> sources = ProgramMaker(seed).makeExpressions(100);
        expectAgreement(sources, 200);
        if (HasFailure()) FAIL() << "seed " << seed << "\n" << joined(sources);
    }
}

}  // namespace
}  // namespace kelmora
