#include "tool/play/console.h"

#include <algorithm>
#include <sstream>

#include "platform/key_table.h"
#include "platform/windows_window.h"

namespace kelmora {
namespace {

constexpr std::size_t mostSaid = 14;
constexpr std::size_t mostOffered = 12;
constexpr PlainLetters::Colour inputColour{255, 255, 255};
constexpr PlainLetters::Colour echoColour{150, 150, 160};
constexpr PlainLetters::Colour valueColour{170, 220, 170};
constexpr PlainLetters::Colour faultColour{255, 170, 140};
constexpr PlainLetters::Colour watchColour{150, 190, 235};
constexpr const char* help =
    "A line runs; an expression shows its value. Up, Down: lines before.\n"
    "lua: or rwby: in front: another language; Tab in an empty line: for all.\n"
    "Tab completes names. watch NAME, unwatch NAME. Escape closes.";

std::string withoutBlanks(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

Console::~Console() {
    WindowsWindow* window = session_.runtime().window;
    if (!window || &window->core != core_) return;
    core_->intercept({});
    core_->setOverlay(nullptr, 0);
}

void Console::beforeUpdate(WindowCore& core) {
    core_ = &core;
    core.intercept([this](const WindowEvent& event) { return take(event); });
    for (const std::string& line : std::exchange(due_, {})) run(line);
}

bool Console::take(const WindowEvent& event) {
    using Kind = WindowEvent::Kind;
    if (event.kind == Kind::keyDown && event.keyCode == keyF12) {
        toggle();
        return true;
    }
    if (!isOpen_) return event.kind == Kind::typed;
    switch (event.kind) {
        case Kind::keyDown:
            press(event.keyCode);
            return true;
        case Kind::typed:
            if (event.keyCode >= ' ' && event.keyCode != 127) field_.insert(static_cast<char>(event.keyCode));
            return true;
        case Kind::resized:
        case Kind::focusGained:
        case Kind::focusLost:
        case Kind::closeRequested:
        case Kind::keyUp:
            return false;
        default:
            return true;
    }
}

void Console::toggle() {
    isOpen_ = !isOpen_;
    if (isOpen_) core_->releaseAll();
    if (isOpen_ && said_.empty()) say(help, echoColour);
    if (WindowsWindow* window = session_.runtime().window; window && window->backend)
        window->backend->setTextInput(isOpen_);
}

void Console::press(int key) {
    switch (key) {
        case keyReturn:
            return enter();
        case keyEscape:
            return toggle();
        case keyTab:
            return completeOrTurn();
        case keyBack:
            return field_.eraseBefore();
        case keyDelete:
            return field_.eraseBehind();
        case keyArrowLeft:
            return field_.moveLeft();
        case keyArrowRight:
            return field_.moveRight();
        case keyHome:
            return field_.moveToStart();
        case keyEnd:
            return field_.moveToEnd();
        case keyArrowUp:
            return field_.showOlder();
        case keyArrowDown:
            return field_.showNewer();
        default:
            return;
    }
}

// Events come while the window is updated, in the midst of a call: the line waits for the next update.
void Console::enter() {
    const std::string line = withoutBlanks(field_.take());
    if (line.empty()) return;
    say(prompt() + line, echoColour);
    due_.push_back(line);
}

void Console::run(const std::string& line) {
    if (runOwn(line)) return;
    ConsoleLanguage language = language_;
    std::string code = line;
    for (const ConsoleLanguage each : {ConsoleLanguage::vesper, ConsoleLanguage::lua, ConsoleLanguage::rwby})
        if (const std::string prefix = std::string(nameOf(each)) + ":"; line.starts_with(prefix)) {
            language = each;
            code = withoutBlanks(line.substr(prefix.size()));
        }
    try {
        const std::string value = runLine(session_.runtime().engine, language, code);
        if (!value.empty()) say(value, valueColour);
    } catch (const std::exception& error) {
        say(error.what(), faultColour);
    }
}

bool Console::runOwn(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    std::string name;
    std::string more;
    words >> verb >> name >> more;
    if (verb == "help" && name.empty()) {
        say(help, echoColour);
        return true;
    }
    if ((verb != "watch" && verb != "unwatch") || name.empty() || !more.empty()) return false;
    std::erase(watched_, name);
    if (verb == "watch") watched_.push_back(name);
    return true;
}

void Console::completeOrTurn() {
    if (field_.text().empty()) {
        language_ = static_cast<ConsoleLanguage>((static_cast<int>(language_) + 1) % 3);
        return;
    }
    const Completion found = completionsOf(session_.runtime().engine, field_.text(), field_.caret());
    if (found.words.empty()) return;
    const bool adds = found.shared.size() > field_.caret() - found.start;
    field_.replaceBefore(found.start, found.shared);
    if (adds || found.words.size() == 1) return;
    std::string offered;
    for (std::size_t i = 0; i < std::min(found.words.size(), mostOffered); ++i)
        offered += found.words[i] + "  ";
    if (found.words.size() > mostOffered)
        offered += "and " + std::to_string(found.words.size() - mostOffered) + " more";
    say(offered, echoColour);
}

void Console::say(const std::string& text, PlainLetters::Colour colour) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) said_.push_back({line, colour});
    if (said_.size() > mostSaid)
        said_.erase(said_.begin(), said_.end() - static_cast<std::ptrdiff_t>(mostSaid));
}

std::string Console::prompt() const {
    return std::string(nameOf(language_)) + "> ";
}

std::vector<OverlayLine> Console::lines() const {
    std::vector<OverlayLine> lines;
    for (const std::string& name : watched_)
        lines.push_back({name + " = " + described(namedValue(session_.runtime().engine, name)), watchColour});
    if (!isOpen_) return lines;
    lines.insert(lines.end(), said_.begin(), said_.end());
    lines.push_back({prompt() + field_.text(), inputColour});
    return lines;
}

int Console::caret() const {
    if (!isOpen_) return -1;
    return static_cast<int>(prompt().size() +
                            PlainLetters::lengthOf(field_.text().substr(0, field_.caret())));
}

}  // namespace kelmora
