#include "platform/recorded_input.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>

#include "base/words.h"
#include "platform/key_table.h"

namespace kelmora {
namespace {

constexpr int largestSide = 16384;
constexpr int farthestPosition = 1000000;

// Turns the words of one line into a step, or into a complaint that says what was expected.
class StepReader {
public:
    explicit StepReader(std::vector<std::string_view> words) : words_(std::move(words)) {}

    RecordedStep read(int earliestUpdate, int& mouseX, int& mouseY) {
        RecordedStep step;
        step.update = readUpdate(earliestUpdate);
        const std::string_view action = word("an action");
        if (action == "shot")
            step.shotPath = word("a file name");
        else
            step.event = event(action, mouseX, mouseY);
        if (next_ != words_.size()) fail("the end of the line");
        return step;
    }

    int readUpdate(int earliestUpdate) {
        return number(earliestUpdate, std::numeric_limits<int>::max(),
                      "the number of an update, " + std::to_string(earliestUpdate) + " or more");
    }

private:
    WindowEvent event(std::string_view action, int& mouseX, int& mouseY) {
        if (action == "keydown") return WindowEvent::keyDown(key());
        if (action == "keyup") return WindowEvent::keyUp(key());
        if (action == "mouse") {
            mouseX = number(-farthestPosition, farthestPosition, "a position");
            mouseY = number(-farthestPosition, farthestPosition, "a position");
            return WindowEvent::mouseMoved(mouseX, mouseY);
        }
        if (action == "button") {
            const MouseButton which = button();
            return choice("down", "up") ? WindowEvent::buttonDown(which, mouseX, mouseY)
                                        : WindowEvent::buttonUp(which, mouseX, mouseY);
        }
        if (action == "wheel") return WindowEvent::wheelTurned(choice("up", "down") ? 1 : -1);
        if (action == "focus")
            return choice("gained", "lost") ? WindowEvent::focusGained() : WindowEvent::focusLost();
        if (action == "resize") {
            const int width = number(1, largestSide, "a width");
            return WindowEvent::resized(width, number(1, largestSide, "a height"));
        }
        if (action == "close") return WindowEvent::closeRequested();
        --next_;
        fail("keydown, keyup, mouse, button, wheel, focus, resize, close, type or shot");
    }

    int key() {
        const std::string_view name = word("the name of a key");
        for (const KeySlot& slot : keyTable)
            if (name == slot.name) return slot.code;
        for (const KeySlot& slot : moreKeyTable)
            if (name == slot.name) return slot.code;
        --next_;
        fail("the name of a key");
    }

    MouseButton button() {
        const std::string_view name = word("left, right or middle");
        if (name == "left") return MouseButton::left;
        if (name == "right") return MouseButton::right;
        if (name == "middle") return MouseButton::middle;
        --next_;
        fail("left, right or middle");
    }

    bool choice(const char* yes, const char* no) {
        const std::string expected = std::string(yes) + " or " + no;
        const std::string_view chosen = word(expected);
        if (chosen == yes) return true;
        if (chosen == no) return false;
        --next_;
        fail(expected);
    }

    int number(int least, int most, const std::string& expected) {
        const std::string_view text = word(expected);
        int value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc() && end == text.data() + text.size() && value >= least && value <= most)
            return value;
        --next_;
        fail(expected);
    }

    std::string_view word(const std::string& expected) {
        if (next_ == words_.size()) fail(expected);
        return words_[next_++];
    }

    [[noreturn]] void fail(const std::string& expected) const {
        const std::string found =
            next_ < words_.size() ? "\"" + std::string(words_[next_]) + "\"" : "the end of the line";
        throw std::runtime_error("found " + found + ", expected " + expected);
    }

    std::vector<std::string_view> words_;
    std::size_t next_ = 0;
};

// Everything behind the blank that follows the word, blanks too.
void addTyped(std::string_view line, int lineNumber, const std::vector<std::string_view>& words, int& update,
              std::vector<RecordedStep>& steps) {
    update = StepReader({words[0], "type"}).readUpdate(update);
    const auto behind = static_cast<std::size_t>(words[1].data() + words[1].size() - line.data()) + 1;
    if (behind >= line.size()) throw std::runtime_error("found the end of the line, expected what is typed");
    for (const char byte : line.substr(behind))
        if (byte != '\r')
            steps.push_back({update, lineNumber, WindowEvent::typed(static_cast<unsigned char>(byte)), ""});
}

}  // namespace

std::vector<RecordedStep> parseRecordedInput(std::string_view text, const std::string& name) {
    std::vector<RecordedStep> steps;
    int mouseX = 0;
    int mouseY = 0;
    int update = 1;
    for (int lineNumber = 1; !text.empty(); ++lineNumber) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        std::vector<std::string_view> words = wordsOf(line);
        if (words.empty() || words[0].front() == '#') continue;
        try {
            if (words.size() > 1 && words[1] == "type") {
                addTyped(line, lineNumber, words, update, steps);
                continue;
            }
            steps.push_back(StepReader(std::move(words)).read(update, mouseX, mouseY));
            steps.back().line = lineNumber;
            update = steps.back().update;
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(name + ", line " + std::to_string(lineNumber) + ": " + error.what() +
                                     " in \"" + std::string(line) + "\"");
        }
    }
    return steps;
}

}  // namespace kelmora
