#pragma once

#include <memory>

#include "platform/window_backend.h"
#include "platform/window_core.h"

namespace kelmora {

// What stands behind a script's window, on every system.
struct WindowsWindow {
    WindowsWindow(const char* title, int width, int height) : core(title, width, height) {}

    WindowCore core;
    std::unique_ptr<WindowBackend> backend;  // goes before the core it feeds
    std::optional<PixelArea> firstPlace;     // before a place was restored, where one can be
};

}  // namespace kelmora
