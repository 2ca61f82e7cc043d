#include "tool/play/play_script.h"

#include <charconv>
#include <stdexcept>

#include "tool/play/input_text.h"
#include "workbench/nearest.h"

namespace kelmora {
namespace {

constexpr int longestWait = 1000000;
constexpr int farthestPixel = 16384;

class LineReader {
public:
    explicit LineReader(std::string_view line) : rest_(line) { skipBlanks(); }

    PlayStep read() {
        using Verb = PlayStep::Verb;
        const std::string verb = word("a step");
        PlayStep step;
        if (verb == "press") {
            step.verb = Verb::press;
            step.key = key();
        } else if (verb == "click") {
            step.verb = Verb::click;
            step.x = number("a position", farthestPixel);
            step.y = number("a position", farthestPixel);
        } else if (verb == "choose") {
            step.verb = Verb::choose;
            step.text = rest("what to choose");
        } else if (verb == "wait") {
            step.count = number("a number of updates", longestWait);
        } else if (verb == "expect") {
            readExpectation(step);
        } else if (verb == "shot") {
            step.verb = Verb::shot;
            step.text = word("a file");
            if (!rest_.empty()) {
                if (word("within") != "within") fail("expected within");
                step.count = number("how far colours may be off", 255);
            }
        } else {
            failWord("there is no step " + verb, verb,
                     {"press", "click", "choose", "wait", "expect", "shot"});
        }
        if (!rest_.empty()) fail("found more than was expected: " + std::string(rest_));
        return step;
    }

private:
    void readExpectation(PlayStep& step) {
        const std::string what = word("text or variable");
        if (what == "text") {
            step.verb = PlayStep::Verb::expectText;
            step.text = rest("the words to expect");
        } else if (what == "variable") {
            step.verb = PlayStep::Verb::expectVariable;
            step.text = word("a variable's name");
            step.value = rest("a value");
        } else {
            failWord("nothing to expect is called " + what, what, {"text", "variable"});
        }
    }

    int key() {
        const std::string name = word("the name of a key");
        const auto code = keyCodeOf(name);
        if (!code) fail("no key is called " + name);
        return *code;
    }

    int number(const std::string& expected, int most) {
        const std::string text = word(expected);
        int value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > most)
            fail("expected " + expected + " from 0 to " + std::to_string(most) + ", found " + text);
        return value;
    }

    std::string word(const std::string& expected) {
        if (rest_.empty()) fail("expected " + expected);
        const std::size_t end = std::min(rest_.find_first_of(" \t"), rest_.size());
        const std::string found(rest_.substr(0, end));
        rest_.remove_prefix(end);
        skipBlanks();
        return found;
    }

    std::string rest(const std::string& expected) {
        if (rest_.empty()) fail("expected " + expected);
        std::string found(rest_.substr(0, rest_.find_last_not_of(" \t") + 1));
        rest_ = {};
        return found;
    }

    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t"), rest_.size())); }

    [[noreturn]] static void fail(const std::string& message) { throw std::runtime_error(message); }
    [[noreturn]] static void failWord(const std::string& message, const std::string& found,
                                      const std::vector<std::string>& known) {
        const std::string near = nearestWord(found, known);
        fail(message + (near.empty() ? "" : "; did you mean " + near + "?"));
    }

    std::string_view rest_;
};

}  // namespace

std::vector<PlayStep> parsePlayScript(std::string_view text, const std::string& name) {
    std::vector<PlayStep> steps;
    for (int number = 1; !text.empty(); ++number) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        const std::size_t start = line.find_first_not_of(" \t");
        if (start == std::string_view::npos || line[start] == '#') continue;
        try {
            steps.push_back(LineReader(line).read());
            steps.back().line = number;
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(name + ":" + std::to_string(number) + ": " + error.what());
        }
    }
    return steps;
}

}  // namespace kelmora
