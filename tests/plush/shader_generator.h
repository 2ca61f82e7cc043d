#pragma once

#include <random>
#include <string>
#include <vector>

namespace kelmora::plush_shader {

// Writes valid shaders of all statements, operators and functions. Names are assigned under conditions and
// read elsewhere, so that some shaders carry values from pixel to pixel; without `carries` none does.
class ShaderGenerator {
public:
    ShaderGenerator(std::mt19937& random, bool carries) : random_(random), carries_(carries) {}

    std::string shader() {
        locals_ = {};
        std::string text = carries_ ? "if r > g p, q = a, b end\n" : "p = 0; q = tr\n";
        for (int i = 1 + pick(5); i > 0; --i) text += statement(3);
        return text;
    }

private:
    using Choices = std::vector<const char*>;

    int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    bool chance(int percent) { return pick(100) < percent; }
    std::string oneOf(const Choices& choices) {
        return choices[static_cast<std::size_t>(pick(int(choices.size())))];
    }

    std::string name() {
        if (!locals_.empty() && chance(40))
            return locals_[static_cast<std::size_t>(pick(int(locals_.size())))];
        return oneOf({"r", "g", "b", "a", "r", "a", "p", "q"});
    }
    std::string atom() {
        if (chance(55)) return name();
        if (carries_ && chance(4)) return "random()";
        return oneOf({"0",     "1",   "0.5",           "2",         "3",  "-1",  "255",   "0.1",
                      "1e-40", "1e9", "3e38",          "math.huge", "x",  "y",   "width", "height",
                      "tr",    "tg",  "VESPER_GREY_R", "true",      "pi", "0/0", "-0"});
    }
    std::string expression(int depth) {
        if (depth <= 0 || chance(12)) return atom();
        switch (pick(8)) {
            case 0:
            case 1:
            case 2:
                return "(" + expression(depth - 1) +
                       oneOf({" + ", " - ", " * ", " / ", " % ", " ^ ", " * ", " / "}) +
                       expression(depth - 1) + ")";
            case 3:
                return condition(depth);
            case 4:
                return oneOf({"-", "not "}) + expression(depth - 1);
            case 5:
                return oneOf({"abs", "floor", "ceil", "round", "sqrt", "sin", "cos", "tan", "atan", "exp",
                              "log", "fract", "sign", "floor", "round", "fract"}) +
                       "(" + expression(depth - 1) + ")";
            case 6:
                return oneOf({"atan2", "min", "max", "step", "pow", "mod", "sampleR", "sampleG", "sampleB",
                              "sampleA", "sampleR", "min", "max"}) +
                       "(" + expression(depth - 1) + ", " + expression(depth - 1) + ")";
            default:
                return oneOf({"clamp", "mix", "smoothstep"}) + "(" + expression(depth - 1) + ", " +
                       expression(depth - 2) + ", " + expression(depth - 2) + ")";
        }
    }
    std::string condition(int depth) {
        const std::string left = expression(depth - 1);
        return "(" + left +
               oneOf({" < ", " <= ", " > ", " >= ", " == ", " ~= ", " and ", " or ", " < ", " > "}) +
               expression(depth - 1) + ")";
    }

    std::string block(int depth) {
        const std::size_t before = locals_.size();
        std::string text;
        for (int i = pick(4); i > 0; --i) text += statement(depth - 1);
        locals_.resize(before);
        return text;
    }
    std::string statement(int depth) {
        if (depth <= 0 || chance(40)) return assignment();
        switch (pick(6)) {
            case 0:
                return "do\n" + block(depth) + "end\n";
            case 1:
                return declaration();
            case 2:
                if (chance(30))
                    return "return" + oneOf({"", " r", " g, r", " 1, g, b", " a, b, g, r", " tr, 0"}) + "\n";
                return assignment();
            default: {
                std::string text = "if " + expression(2) + "\n" + block(depth);
                while (chance(30)) text += "elseif " + condition(2) + "\n" + block(depth);
                if (chance(50)) text += "else\n" + block(depth);
                return text + "end\n";
            }
        }
    }
    std::string assignment() {
        if (chance(25)) return name() + ", " + name() + " = " + expression(1) + ", " + expression(2) + "\n";
        return name() + " = " + expression(3) + "\n";
    }
    std::string declaration() {
        const std::string value = expression(2);
        const std::string local = "l" + std::to_string(pick(6));
        locals_.push_back(local);
        return "local " + local + (chance(85) ? " = " + value : "") + "\n";
    }

    std::mt19937& random_;
    bool carries_;
    std::vector<std::string> locals_;
};

}  // namespace kelmora::plush_shader
