#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/window_core.h"

namespace kelmora {

struct PixelSize {
    int width;
    int height;

    bool operator==(const PixelSize&) const = default;
};

struct PixelArea {
    int x = 0;
    int y = 0;
    int width = 1;
    int height = 1;

    bool operator==(const PixelArea&) const = default;
};

// What a display does for one window. A new kind of display fills in this form; the rest of the window is
// `WindowCore`, which the back end gets at creation, feeds with events and never outlives.
class WindowBackend {
public:
    WindowBackend() = default;
    WindowBackend(const WindowBackend&) = delete;
    WindowBackend& operator=(const WindowBackend&) = delete;
    virtual ~WindowBackend() = default;

    // Gives the waiting events to the core. True when the core's picture must be presented again although
    // it may not have changed.
    virtual bool pumpEvents() = 0;
    virtual void present() = 0;
    virtual void setTitle(const char* title) = 0;
    // Asks for a client area; the result is the size it really has now.
    virtual PixelSize setSize(int width, int height) = 0;
    virtual void hide() = 0;
    // Whether characters are told as they are typed.
    virtual void setTextInput(bool) {}
    virtual PixelSize screenSize() const = 0;
    // The whole screen, or the window as it was before. The new client size is told as an event.
    virtual void setFullscreen(bool on) = 0;
    virtual bool isFullscreen() const = 0;
    // The client area on the desktop, for full screen the one to come back to. Nothing where that is not
    // worth keeping.
    virtual std::optional<PixelArea> place() const = 0;
    virtual void setPlace(const PixelArea& area) = 0;
    // Puts UTF-8 text into the clipboard. False where the system does not take it.
    virtual bool copyText(const std::string& text) = 0;
    // All screens on the desktop.
    virtual std::vector<PixelArea> screens() const = 0;
};

// The display of the system this is built for. Shows a window with the core's title and as near as can be to
// its size, centred on the primary screen, and tells the core the client size and focus it got. Null when
// that fails.
std::unique_ptr<WindowBackend> createSystemWindow(WindowCore& core);
// Whether the surroundings name a display at all; asking does not open it.
bool systemDisplayIsNamed();
// What KELMORA_VIDEO calls it.
const char* systemVideoName();

}  // namespace kelmora
