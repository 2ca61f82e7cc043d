#include "tool/play/test_player.h"

#include <algorithm>
#include <cstdlib>

#include "codec/png.h"
#include "platform/window_core.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

constexpr int mostDigits = 6;

bool isNumber(const std::string& text) {
    return text.size() == 1 && text[0] >= '1' && text[0] <= '9';
}

const Variable* member(const Variable& table, const char* name) {
    return table.isTable() ? table.table().find(name) : nullptr;
}

}  // namespace

TestPlayer::TestPlayer(GameSession& session, std::vector<PlayStep> steps, std::filesystem::path folder)
    : session_(session), steps_(std::move(steps)), folder_(std::move(folder)), texts_(session) {}

void TestPlayer::beforeUpdate(int update, WindowCore& core) {
    update_ = update;
    while (failure_.empty() && !dueShot_ && next_ < steps_.size()) {
        const bool isDone = advance(steps_[next_], core);
        ++part_;
        if (!isDone) break;
        if (dueShot_) break;
        ++next_;
        part_ = 0;
    }
    if (!failure_.empty() || next_ == steps_.size()) core.requestClose();
}

void TestPlayer::afterUpdate(int, WindowCore& core) {
    texts_.endUpdate();
    if (!dueShot_) return;
    dueShot_ = false;
    compare(steps_[next_], core);
    if (!failure_.empty()) return;
    ++next_;
    part_ = 0;
}

bool TestPlayer::advance(const PlayStep& step, WindowCore& core) {
    using Verb = PlayStep::Verb;
    switch (step.verb) {
        case Verb::press:
            return press(step.key, core);
        case Verb::click:
            return click(step, core);
        case Verb::choose:
            return choose(step, core);
        case Verb::wait:
            return part_ >= step.count;
        case Verb::expectText:
            return waitFor(texts_.shows(step.text),
                           "expected the text \"" + step.text + "\", but there stands " + texts_.summary());
        case Verb::expectVariable:
            return expectVariable(step);
        case Verb::shot:
            return dueShot_ = true;
    }
    return true;
}

// Down for one update and up for one, so that a game sees both.
bool TestPlayer::press(int key, WindowCore& core) {
    if (part_ == 0) core.handle(WindowEvent::keyDown(key));
    if (part_ == 1) core.handle(WindowEvent::keyUp(key));
    return part_ == 2;
}

bool TestPlayer::click(const PlayStep& step, WindowCore& core) {
    if (part_ == 0) core.handle(WindowEvent::mouseMoved(step.x, step.y));
    if (part_ == 1) core.handle(WindowEvent::buttonDown(MouseButton::left, step.x, step.y));
    if (part_ == 2) core.handle(WindowEvent::buttonUp(MouseButton::left, step.x, step.y));
    return part_ == 3;
}

// Games of the library for novels tell their choices; elsewhere a number is a key.
bool TestPlayer::choose(const PlayStep& step, WindowCore& core) {
    const Variable items = variable("novelItems");
    if (step.count == 0) {
        int item = isNumber(step.text) ? step.text[0] - '0' : itemWith(step.text);
        if (items.isArray() && (item < 1 || static_cast<std::size_t>(item) > items.items().size())) item = 0;
        if (!items.isArray() && item == 0) {
            fail("choose wants a number, or a game that is made with the library for novels");
            return false;
        }
        if (item > mostDigits) {
            fail("choose reaches the first " + std::to_string(mostDigits) + " choices only");
            return false;
        }
        const bool isOpen = item > 0 && (!items.isArray() || itemsAreOpen());
        if (!waitFor(isOpen, "there is no choice \"" + step.text + "\"; there stands " + texts_.summary()))
            return false;
        steps_[next_].count = '0' + item;
        part_ = 0;
    }
    return press(step.count, core);
}

int TestPlayer::itemWith(const std::string& words) const {
    const Variable items = variable("novelItems");
    if (!items.isArray()) return 0;
    for (std::size_t i = 0; i < items.items().size(); ++i) {
        const Variable* say = member(items.items()[i], "say");
        if (say && say->isString() && onOneLine(say->text()).find(words) != std::string::npos)
            return static_cast<int>(i + 1);
    }
    return 0;
}

// A choice takes nothing at first.
bool TestPlayer::itemsAreOpen() const {
    const Variable since = variable("novelSince");
    const Variable guard = variable("novelGuard");
    return !since.isInt() || !guard.isInt() || since.intValue() >= guard.intValue();
}

// A global of the scripts, or what a novel remembers.
Variable TestPlayer::variable(const std::string& name) const {
    const VesperScript& engine = session_.runtime().engine;
    const Variable global = globalOf(engine, name);
    if (!global.isNot()) return global;
    const Variable remembered = globalOf(engine, "novelVars");
    const Variable* found = member(remembered, name.c_str());
    return found ? *found : global;
}

bool TestPlayer::expectVariable(const PlayStep& step) {
    const std::string value = variable(step.text).toString();
    return waitFor(value == step.value,
                   "expected " + step.text + " to be " + step.value + ", but it is " + value);
}

bool TestPlayer::waitFor(bool isThere, const std::string& complaint) {
    if (!isThere && part_ >= patience) fail(complaint);
    return isThere;
}

void TestPlayer::compare(const PlayStep& step, const WindowCore& core) {
    const std::string path = (folder_ / step.text).string();
    const auto* seen = reinterpret_cast<const unsigned char*>(core.backbuffer().data());
    const auto store = [&](const std::string& target) {
        if (vh::png::save_png_rgba8_file(target.c_str(), seen, core.clientWidth(), core.clientHeight()))
            return true;
        fail("cannot write " + target);
        return false;
    };
    if (!std::filesystem::exists(path)) {
        if (store(path)) notes_.push_back("stored " + step.text + ", which was not there");
        return;
    }
    vh::png::Image wanted;
    int off = 256;
    if (vh::png::load_file(path.c_str(), wanted) && static_cast<int>(wanted.width) == core.clientWidth() &&
        static_cast<int>(wanted.height) == core.clientHeight()) {
        off = 0;
        for (std::size_t i = 0; i < wanted.pixels.size(); ++i)
            off = std::max(off, std::abs(wanted.pixels[i] - seen[i]));
    }
    if (off <= step.count || !store(path + ".seen.png")) return;
    fail("the picture is not " + step.text + ", " +
         (off > 255 ? "which has another size" : "colours are off by up to " + std::to_string(off)) +
         "; it is " + step.text + ".seen.png");
}

}  // namespace kelmora
