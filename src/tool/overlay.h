#pragma once

#include <string>
#include <vector>

#include "font/plain_letters.h"
#include "platform/window_core.h"

namespace kelmora {

struct OverlayLine {
    std::string text;
    PlainLetters::Colour colour;
};

// Lines in the engine's own letters over a game's picture, at the top or the foot of the window. Long lines
// are wrapped; what does not fit is left out, from the top on. A caret of -1 is none, else it stands behind
// so many cells of the last line.
void showOverlay(WindowCore& core, const std::vector<OverlayLine>& lines, bool atTop, int caret = -1);

}  // namespace kelmora
