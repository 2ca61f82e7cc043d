#pragma once

#include <functional>
#include <string>

#include "image/plush_image.h"

namespace kelmora {

struct WindowsWindow;

// A page of words that the engine draws by itself: it needs nothing of the game, no font and no picture.
struct MessagePage {
    enum class Mood { alarm, calm };

    Mood mood = Mood::alarm;
    std::string title;
    std::string text;    // lines; those that are indented by four are of a source
    std::string copied;  // what the key C puts into the clipboard
    bool mayReload = false;
};

// Fills the picture, from a line of the wrapped text on. The number of lines that did not fit below.
int drawMessagePage(const MessagePage& page, int firstLine, const std::string& note, PlushImage& picture);

enum class PageEnd { left, reload };

// Shows the page until Escape or Return, or the window's button, or R where that is offered; `update` is an
// update of the window. A window that is too small for words is made larger. On a display that nobody sees it
// ends after a while.
PageEnd showMessagePage(WindowsWindow* window, const MessagePage& page, const std::function<void()>& update);

}  // namespace kelmora
