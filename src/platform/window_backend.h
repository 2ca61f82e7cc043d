#pragma once

#include <memory>

#include "platform/window_core.h"

namespace kelmora {

struct PixelSize {
    int width;
    int height;
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
    virtual PixelSize screenSize() const = 0;
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
