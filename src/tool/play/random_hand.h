#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "platform/window_event.h"
#include "tool/play/coverage.h"
#include "tool/play/novel_view.h"

namespace kelmora {

// Plays at random: what a player might press, the same for the same seed. It knows its way about novels,
// where it prefers what has not been picked yet.
class RandomHand {
public:
    explicit RandomHand(std::uint32_t seed) : random_(seed) {}

    // The events that arrive with the next update. Sizes are those of the window, in pixels.
    std::vector<WindowEvent> next(const NovelView& novel, const Coverage& coverage, int width, int height);

private:
    struct HeldKey {
        int code;
        int updates;
    };

    std::vector<WindowEvent> readOn();
    std::vector<WindowEvent> choose(const NovelView& novel, const Coverage& coverage);
    std::vector<WindowEvent> chooseOnTitle(const NovelView& novel);
    std::vector<WindowEvent> wander(const NovelView& novel);
    std::vector<WindowEvent> pickItem(const std::vector<NovelView::Item>& items, std::size_t which);
    std::vector<WindowEvent> playOther(int width, int height);
    void letGo(std::vector<WindowEvent>& events);
    // A whole number from 0 up to below `end`.
    int below(int end) { return static_cast<int>(random_() % static_cast<std::uint32_t>(end)); }
    bool oneIn(int times) { return below(times) == 0; }

    std::mt19937 random_;
    int rest_ = 0;  // updates without anything
    std::vector<HeldKey> held_;
};

}  // namespace kelmora
