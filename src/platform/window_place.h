#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/window_backend.h"

namespace kelmora {

struct WindowsWindow;

// What is remembered of a window from one run of a game to the next.
struct WindowPlace {
    PixelSize asked{1, 1};  // by the game; what was kept for another size is of no use
    PixelArea area;
    bool fullscreen = false;
};

// A few lines of text, and back; nothing for text that is anything else.
std::string placeText(const WindowPlace& place);
std::optional<WindowPlace> readPlace(std::string_view text);

// The area, moved and made smaller so far that it can be seen and taken hold of on one of the screens.
PixelArea fittedTo(std::span<const PixelArea> screens, PixelArea area);

// Puts a new window where the file says. A missing or bad file changes nothing.
void restorePlace(WindowsWindow& window, const std::string& path);
// Writes the file if the place is another than the window's first, or than the file's. A folder that is not
// there is not made.
void rememberPlace(const WindowsWindow& window, const std::string& path);

}  // namespace kelmora
