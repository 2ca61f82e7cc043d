#pragma once

#include <string>
#include <vector>

#include "font/plain_letters.h"
#include "platform/window_core.h"

namespace kelmora {

struct OverlayLine {
    std::string text;
    PlainLetters::Colour colour;
    bool operator==(const OverlayLine&) const = default;
};

// Lines in the engine's own letters over a game's picture, at the top of the window. Long lines are wrapped;
// what does not fit is left out, from the top on. Nothing is drawn again that has not changed.
class Overlay {
public:
    // A caret of -1 is none, else it stands before so many cells of the last line.
    void show(WindowCore& core, const std::vector<OverlayLine>& lines, int caret = -1);

private:
    std::vector<OverlayLine> lines_;
    int caret_ = -1;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace kelmora
