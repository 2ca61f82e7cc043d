#include "platform/windows_window.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include "platform/memory_window.h"
#include "platform/window.h"
#include "platform/window_place.h"

using kelmora::MouseButton;
using kelmora::WindowsWindow;

namespace {

// The window whose keys are read: the one updated last.
WindowsWindow* activeWindow = nullptr;

std::unique_ptr<kelmora::WindowBackend> createBackend(kelmora::WindowCore& core) {
    const char* chosen = std::getenv("KELMORA_VIDEO");
    const std::string video = chosen ? chosen : "";
    if (video.empty()) return kelmora::systemDisplayIsNamed() ? kelmora::createSystemWindow(core) : nullptr;
    if (video == "memory") return kelmora::createMemoryWindow(core);
    if (video == kelmora::systemVideoName()) return kelmora::createSystemWindow(core);
    throw std::runtime_error("KELMORA_VIDEO is \"" + video + "\", expected \"memory\" or \"" +
                             kelmora::systemVideoName() + "\"");
}

void store(int* target, int value) {
    if (target) *target = value;
}

}  // namespace

WindowsWindow* vh_createWindow(const char* title, int width, int height) try {
    auto window = std::make_unique<WindowsWindow>(title, width, height);
    window->backend = createBackend(window->core);
    return window->backend ? window.release() : nullptr;
} catch (const std::bad_alloc&) {
    return nullptr;
}

void vh_closeWindow(WindowsWindow* window) {
    if (!window) return;
    window->core.requestClose();
    window->backend->hide();
}

void vh_destroyWindow(WindowsWindow* window) {
    if (activeWindow == window) activeWindow = nullptr;
    delete window;
}

char* vh_getWindowTitle(const WindowsWindow* window) {
    if (!window) return nullptr;
    const std::string& title = window->core.title();
    auto* copy = static_cast<char*>(std::malloc(title.size() + 1));
    if (copy) std::memcpy(copy, title.c_str(), title.size() + 1);
    return copy;
}

void vh_getWindowSize(const WindowsWindow* window, int* width, int* height) {
    store(width, window ? window->core.logicalWidth() : 0);
    store(height, window ? window->core.logicalHeight() : 0);
}

void vh_setWindowSize(WindowsWindow* window, int width, int height) {
    if (!window) return;
    kelmora::WindowCore& core = window->core;
    core.setLogicalSize(width, height);
    const kelmora::PixelSize client = window->backend->setSize(core.logicalWidth(), core.logicalHeight());
    core.setClientSize(client.width, client.height);
}

void vh_setWindowTitle(WindowsWindow* window, const char* title) {
    if (!window) return;
    window->core.setTitle(title);
    window->backend->setTitle(window->core.title().c_str());
}

void vh_pushImage(WindowsWindow* window, const kelmora::PlushImage* image) {
    if (window && image) window->core.pushImage(*image);
}

void vh_updateWindow(WindowsWindow* window) {
    if (!window) return;
    activeWindow = window;
    const bool lost = window->backend->pumpEvents();
    if (window->core.takeFullscreenToggle()) window->backend->setFullscreen(!window->backend->isFullscreen());
    const bool changed = window->core.composeIfDirty();
    if (lost || changed) window->backend->present();
}

bool vh_windowShouldClose(const WindowsWindow* window) {
    return !window || window->core.shouldClose();
}

void vh_setFullscreen(WindowsWindow* window, bool on) {
    if (window && window->backend->isFullscreen() != on) window->backend->setFullscreen(on);
}

bool vh_isFullscreen(const WindowsWindow* window) {
    return window && window->backend->isFullscreen();
}

void vh_setScaling(WindowsWindow* window, kelmora::Scaling scaling) {
    if (window) window->core.setScaling(scaling);
}

void vh_restorePlace(WindowsWindow* window, const char* path) {
    if (window) kelmora::restorePlace(*window, path);
}

void vh_rememberPlace(const WindowsWindow* window, const char* path) {
    if (window) kelmora::rememberPlace(*window, path);
}

void vh_clearWindow(WindowsWindow* window, unsigned char red, unsigned char green, unsigned char blue) {
    if (window) window->core.setClearColour({red, green, blue});
}

kelmora::PlushImage* vh_captureWindow(const WindowsWindow* window) {
    return window ? window->core.capture() : nullptr;
}

bool vh_copyText(WindowsWindow* window, const char* text) {
    return window && text && window->backend->copyText(text);
}

void vh_getMousePosition(const WindowsWindow* window, int* x, int* y) {
    store(x, window ? window->core.mouseX() : -1);
    store(y, window ? window->core.mouseY() : -1);
}

bool vh_getMouseButtonState(const WindowsWindow* window, int button) {
    if (!window || button < 0 || button > 2) return false;
    constexpr MouseButton buttons[] = {MouseButton::left, MouseButton::right, MouseButton::middle};
    return window->core.buttonDown(buttons[button]);
}

const kelmora::KeyState* vh_updateKeyboardState() {
    static kelmora::KeyState state;
    state = activeWindow ? activeWindow->core.keyState() : kelmora::KeyState{};
    return &state;
}

bool vh_isKeyDown(int code) {
    return activeWindow && activeWindow->core.keyDown(code);
}

const char* vh_takePress(WindowsWindow* window) {
    return window ? window->core.takePress() : nullptr;
}

int vh_takeWheel(WindowsWindow* window) {
    return window ? window->core.takeWheel() : 0;
}

void vh_setTouchBarButtonText(kelmora::WindowsWindow*, int, const char*) {}
void vh_setTouchBarButtonImage(kelmora::WindowsWindow*, int, const kelmora::PlushImage*) {}
void vh_clearTouchBar(kelmora::WindowsWindow*) {}
bool vh_getTouchBarButtonState(const kelmora::WindowsWindow*, int) {
    return false;
}

void vh_sailfish_register_key(int) {}
int vh_sailfish_left_orientation() {
    return 0;
}
