#include "platform/window_place.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "base/whole_file.h"
#include "base/words.h"
#include "platform/system.h"
#include "platform/windows_window.h"

namespace kelmora {
namespace {

constexpr int largestSide = 16384;
constexpr int farthest = 100000;
// As much of a window as a hand needs to get hold of it.
constexpr int leastSeen = 64;

bool readNumber(std::string_view word, int least, int most, int& value) {
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size() && value >= least && value <= most;
}

// How far two stretches overlap.
int shared(int start, int length, int otherStart, int otherLength) {
    return std::min(start + length, otherStart + otherLength) - std::max(start, otherStart);
}

// A title stands above the area, so its upper edge has to be on the screen.
bool canBeHeld(const PixelArea& area, const PixelArea& screen) {
    return shared(area.x, area.width, screen.x, screen.width) >= std::min(leastSeen, area.width) &&
           area.y >= screen.y && area.y + std::min(leastSeen, area.height) <= screen.y + screen.height;
}

}  // namespace

std::string placeText(const WindowPlace& place) {
    const auto pair = [](int a, int b) { return std::to_string(a) + " " + std::to_string(b) + "\n"; };
    return "asked " + pair(place.asked.width, place.asked.height) + "size " +
           pair(place.area.width, place.area.height) + "at " + pair(place.area.x, place.area.y) +
           "fullscreen " + (place.fullscreen ? "yes\n" : "no\n");
}

std::optional<WindowPlace> readPlace(std::string_view text) {
    const std::vector<std::string_view> words = wordsOf(text);
    if (words.size() != 11 || words[0] != "asked" || words[3] != "size" || words[6] != "at" ||
        words[9] != "fullscreen" || (words[10] != "yes" && words[10] != "no"))
        return std::nullopt;
    WindowPlace place;
    place.fullscreen = words[10] == "yes";
    const bool good = readNumber(words[1], 1, largestSide, place.asked.width) &&
                      readNumber(words[2], 1, largestSide, place.asked.height) &&
                      readNumber(words[4], 1, largestSide, place.area.width) &&
                      readNumber(words[5], 1, largestSide, place.area.height) &&
                      readNumber(words[7], -farthest, farthest, place.area.x) &&
                      readNumber(words[8], -farthest, farthest, place.area.y);
    return good ? std::optional(place) : std::nullopt;
}

PixelArea fittedTo(std::span<const PixelArea> screens, PixelArea area) {
    if (screens.empty()) return area;
    const auto holds = [&area](const PixelArea& screen) { return canBeHeld(area, screen); };
    const auto found = std::ranges::find_if(screens, holds);
    const PixelArea& screen = found == screens.end() ? screens.front() : *found;
    if (found == screens.end()) {
        area.width = std::min(area.width, screen.width);
        area.height = std::min(area.height, screen.height);
        area.x = screen.x + (screen.width - area.width) / 2;
        area.y = screen.y + (screen.height - area.height) / 2;
    }
    return area;
}

void restorePlace(WindowsWindow& window, const std::string& path) {
    window.firstPlace = window.backend->place();
    const auto text = readWholeFile(path);
    const auto place = text ? readPlace(*text) : std::nullopt;
    if (!place || place->asked != PixelSize{window.core.logicalWidth(), window.core.logicalHeight()}) return;
    if (!window.firstPlace) return;
    window.backend->setPlace(fittedTo(window.backend->screens(), place->area));
    if (place->fullscreen) window.backend->setFullscreen(true);
}

void rememberPlace(const WindowsWindow& window, const std::string& path) {
    const auto area = window.backend->place();
    if (!area) return;
    const WindowPlace place{
        {window.core.logicalWidth(), window.core.logicalHeight()}, *area, window.backend->isFullscreen()};
    const auto old = readWholeFile(path);
    const std::string text = placeText(place);
    const bool isFirst = !old && area == window.firstPlace && !place.fullscreen;
    // What cannot be written is not worth a word: the window opens in the middle again.
    if (!isFirst && old != text)
        static_cast<void>(platform_replace_file(path.c_str(), text.data(), text.size()));
}

}  // namespace kelmora
