#include "tool/play/random_hand.h"

#include <iterator>
#include <span>
#include <string>

#include "platform/key_table.h"

namespace kelmora {
namespace {

// Down and up in one update, which novels see as a press.
std::vector<WindowEvent> tap(int code) {
    return {WindowEvent::keyDown(code), WindowEvent::keyUp(code)};
}

std::vector<WindowEvent> clickAt(int x, int y) {
    return {WindowEvent::mouseMoved(x, y), WindowEvent::buttonDown(MouseButton::left, x, y),
            WindowEvent::buttonUp(MouseButton::left, x, y)};
}

// Of an index by its weight.
std::size_t pickWeighted(std::span<const int> weights, int at) {
    std::size_t index = 0;
    while (index + 1 < weights.size() && at >= weights[index]) at -= weights[index++];
    return index;
}

int sumOf(std::span<const int> weights) {
    int sum = 0;
    for (const int weight : weights) sum += weight;
    return sum;
}

}  // namespace

std::vector<WindowEvent> RandomHand::next(const NovelView& novel, const Coverage& coverage, int width,
                                          int height) {
    if (!novel.isNovel()) return playOther(width, height);
    if (rest_ > 0) {
        --rest_;
        return {};
    }
    const std::string screen = novel.screen();
    if (novel.asksForChoice()) return choose(novel, coverage);
    if (screen == "read") return readOn();
    if (screen == "title") return chooseOnTitle(novel);
    if (screen == "ending" || screen == "credits") return tap(keyReturn);
    return wander(novel);
}

// Mostly on; now and then all else that a reader may do.
std::vector<WindowEvent> RandomHand::readOn() {
    constexpr int others[] = {keyEscape, 'L', 'Q', 'A', 'F', 'H', 'O', keyArrowLeft, keyTab, 116};
    const int roll = below(100);
    if (roll < 86) return tap(keyReturn);
    if (roll < 90) return clickAt(400 + below(100), 150 + below(100));
    if (roll < 94) {
        rest_ = 1 + below(24);
        return {};
    }
    if (roll < 96) return {WindowEvent::wheelTurned(oneIn(2) ? 1 : -1)};
    return tap(others[below(static_cast<int>(std::size(others)))]);
}

std::vector<WindowEvent> RandomHand::choose(const NovelView& novel, const Coverage& coverage) {
    if (!novel.itemsAreOpen()) return {};
    const std::vector<NovelView::Item> items = novel.items();
    const std::vector<NovelView::Page> pages = novel.lastPages();
    if (items.empty() || pages.empty()) return tap(keyReturn);
    std::vector<int> weights;
    for (const NovelView::Item& item : items)
        weights.push_back(coverage.wasTaken(pages.back().name, item.option) ? 1 : 6);
    return pickItem(items, pickWeighted(weights, below(sumOf(weights))));
}

std::vector<WindowEvent> RandomHand::chooseOnTitle(const NovelView& novel) {
    const std::vector<NovelView::Item> items = novel.items();
    if (items.empty()) return tap(keyReturn);
    std::vector<int> weights;
    for (const NovelView::Item& item : items) weights.push_back(item.leaves ? 0 : item.begins ? 12 : 1);
    if (sumOf(weights) == 0) return tap(keyReturn);
    return pickItem(items, pickWeighted(weights, below(sumOf(weights))));
}

// In menus, and soon out of them.
std::vector<WindowEvent> RandomHand::wander(const NovelView& novel) {
    constexpr int keys[] = {keyArrowUp, keyArrowDown, keyArrowLeft, keyArrowRight, keyArrowDown};
    if (novel.screen() == "ask" && !oneIn(8)) return tap(keyEscape);
    const int roll = below(10);
    if (roll < 3) return tap(keyEscape);
    if (roll < 6) return tap(keys[below(static_cast<int>(std::size(keys)))]);
    const std::vector<NovelView::Item> items = novel.items();
    if (items.empty() || roll == 6) return tap(keyReturn);
    return pickItem(items, static_cast<std::size_t>(below(static_cast<int>(items.size()))));
}

// By its digit, or by the mouse where there is none.
std::vector<WindowEvent> RandomHand::pickItem(const std::vector<NovelView::Item>& items, std::size_t which) {
    if (which < 6 && !oneIn(5)) return tap('1' + static_cast<int>(which));
    return clickAt(items[which].x, items[which].y);
}

void RandomHand::letGo(std::vector<WindowEvent>& events) {
    std::vector<HeldKey> held;
    for (const HeldKey& key : held_) {
        if (key.updates > 1)
            held.push_back({key.code, key.updates - 1});
        else
            events.push_back(WindowEvent::keyUp(key.code));
    }
    held_ = std::move(held);
}

// Keys are held for a while, since games look at what is down.
std::vector<WindowEvent> RandomHand::playOther(int width, int height) {
    constexpr int usual[] = {
        keyArrowLeft, keyArrowUp, keyArrowRight, keyArrowDown, keyArrowLeft, keyArrowRight, keyReturn,
        32,           'W',        'A',           'S',          'D',          'Z',           'X'};
    std::vector<WindowEvent> events;
    letGo(events);
    if (held_.size() < 3 && oneIn(5)) {
        int code = usual[below(static_cast<int>(std::size(usual)))];
        if (oneIn(30)) code = oneIn(2) ? 'A' + below(26) : '0' + below(10);
        if (oneIn(150)) code = keyEscape;
        bool isHeld = false;
        for (const HeldKey& key : held_) isHeld = isHeld || key.code == code;
        if (!isHeld) {
            events.push_back(WindowEvent::keyDown(code));
            held_.push_back({code, 1 + below(20)});
        }
    }
    if (oneIn(12)) events.push_back(WindowEvent::mouseMoved(below(width), below(height)));
    if (oneIn(16)) {
        const std::vector<WindowEvent> click = clickAt(below(width), below(height));
        events.insert(events.end(), click.begin(), click.end());
    }
    return events;
}

}  // namespace kelmora
