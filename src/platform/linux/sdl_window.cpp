#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/sdl_library.h"
#include "platform/linux/sdl_pads.h"
#include "platform/window_backend.h"

namespace kelmora {
namespace {

// Keys that are known by what they are labelled with.
struct KeyCodePair {
    SDL_Keycode key;
    int code;
};
constexpr KeyCodePair labelledKeys[] = {
    {SDLK_RETURN, 13},   {SDLK_KP_ENTER, 13}, {SDLK_LEFT, 37},      {SDLK_UP, 38},       {SDLK_RIGHT, 39},
    {SDLK_DOWN, 40},     {SDLK_MINUS, 189},   {SDLK_KP_MINUS, 109}, {SDLK_BACKSPACE, 8}, {SDLK_DELETE, 46},
    {SDLK_SPACE, 32},    {SDLK_ESCAPE, 27},   {SDLK_TAB, 9},        {SDLK_LSHIFT, 16},   {SDLK_RSHIFT, 16},
    {SDLK_LCTRL, 17},    {SDLK_RCTRL, 17},    {SDLK_LALT, 18},      {SDLK_RALT, 18},     {SDLK_PAGEUP, 33},
    {SDLK_PAGEDOWN, 34}, {SDLK_END, 35},      {SDLK_HOME, 36},      {SDLK_INSERT, 45},
};
// What the number pad does while NumLock is off.
constexpr KeyCodePair numberPadKeys[] = {
    {SDLK_KP_4, 37}, {SDLK_KP_8, 38}, {SDLK_KP_6, 39}, {SDLK_KP_2, 40}, {SDLK_KP_PERIOD, 46},
    {SDLK_KP_9, 33}, {SDLK_KP_3, 34}, {SDLK_KP_1, 35}, {SDLK_KP_7, 36}, {SDLK_KP_0, 45},
};

template <std::size_t count>
int lookUp(const KeyCodePair (&pairs)[count], SDL_Keycode key) {
    for (const KeyCodePair& pair : pairs)
        if (pair.key == key) return pair.code;
    return 0;
}

// Digits are the keys of the top row whatever they print, letters are the letters printed (those of the
// usual places on a keyboard without Latin letters). 0 for a key that has no meaning here.
int virtualKeyCode(const SDL_Keysym& symbol) {
    if (symbol.scancode >= SDL_SCANCODE_1 && symbol.scancode <= SDL_SCANCODE_9)
        return '1' + (symbol.scancode - SDL_SCANCODE_1);
    if (symbol.scancode == SDL_SCANCODE_0) return '0';
    if (symbol.sym >= SDLK_a && symbol.sym <= SDLK_z) return 'A' + (symbol.sym - SDLK_a);
    if (symbol.scancode >= SDL_SCANCODE_F1 && symbol.scancode <= SDL_SCANCODE_F12)
        return 112 + (symbol.scancode - SDL_SCANCODE_F1);
    const bool otherAlphabet = symbol.sym > 127 && (symbol.sym & SDLK_SCANCODE_MASK) == 0;
    if (otherAlphabet && symbol.scancode >= SDL_SCANCODE_A && symbol.scancode <= SDL_SCANCODE_Z)
        return 'A' + (symbol.scancode - SDL_SCANCODE_A);
    if ((symbol.mod & KMOD_NUM) == 0)
        if (const int code = lookUp(numberPadKeys, symbol.sym)) return code;
    return lookUp(labelledKeys, symbol.sym);
}

bool mouseButtonOf(Uint8 number, MouseButton& button) {
    switch (number) {
        case SDL_BUTTON_LEFT:
            button = MouseButton::left;
            return true;
        case SDL_BUTTON_RIGHT:
            button = MouseButton::right;
            return true;
        case SDL_BUTTON_MIDDLE:
            button = MouseButton::middle;
            return true;
        default:
            return false;
    }
}

bool environmentSets(const char* name) {
    const char* value = std::getenv(name);
    return value && *value;
}

// SDL falls back on drivers that show nothing when no display answers. Those count only if asked for by name.
bool driverShowsNothing(std::string_view driver) {
    return driver == "offscreen" || driver == "dummy" || driver == "evdev";
}

// SDL counts its users, so each window holds one of these.
class SdlSession {
public:
    SdlSession() {
        sdl().setMainReady();
        sdl().setHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        sdl().setHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
        sdl().setHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
        started_ = sdl().initSubSystem(SDL_INIT_VIDEO) == 0;
        if (!started_) return;
        const std::string_view driver = sdl().getCurrentVideoDriver();
        shows_ = !driverShowsNothing(driver) || environmentSets("SDL_VIDEODRIVER");
        // Shared memory is the shortest way for pixels that the processor has drawn; only this driver has it.
        if (driver == "x11") sdl().setHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
        // An input method would swallow the letters that scripts read as keys.
        sdl().stopTextInput();
        sdlPads().start();
    }
    SdlSession(const SdlSession&) = delete;
    SdlSession& operator=(const SdlSession&) = delete;
    ~SdlSession() {
        if (started_) sdl().quitSubSystem(SDL_INIT_VIDEO);
    }
    // Whether there is a display to open windows on.
    bool shows() const { return shows_; }

private:
    bool started_ = false;
    bool shows_ = false;
};

class SdlWindow : public WindowBackend {
public:
    explicit SdlWindow(WindowCore& core) : core_(core) { liveWindows.push_back(this); }
    ~SdlWindow() override {
        std::erase(liveWindows, this);
        if (window_) sdl().destroyWindow(window_);
    }

    bool open();

    bool pumpEvents() override;
    void present() override;
    void setTitle(const char* title) override { sdl().setWindowTitle(window_, title); }
    PixelSize setSize(int width, int height) override;
    void hide() override { sdl().hideWindow(window_); }
    void setTextInput(bool on) override { on ? sdl().startTextInput() : sdl().stopTextInput(); }
    PixelSize screenSize() const override;
    void setFullscreen(bool on) override;
    bool isFullscreen() const override { return hasFlag(SDL_WINDOW_FULLSCREEN); }
    std::optional<PixelArea> place() const override;
    void setPlace(const PixelArea& area) override;
    bool copyText(const std::string& text) override { return sdl().setClipboardText(text.c_str()) == 0; }
    std::vector<PixelArea> screens() const override;

private:
    // Events come for all windows at once, whichever is updated.
    static void dispatch(const SDL_Event& event, WindowCore& updatedCore);
    static SdlWindow* find(Uint32 id);
    static void reportPads(PadChange change);

    void handleWindowEvent(const SDL_WindowEvent& event);
    void handleKey(const SDL_KeyboardEvent& event);
    void handleButton(const SDL_MouseButtonEvent& event);
    bool hasFlag(Uint32 flag) const { return (sdl().getWindowFlags(window_) & flag) != 0; }
    PixelArea area() const;
    PixelSize clientSize() const;
    PixelSize largestSize() const;

    static std::vector<SdlWindow*> liveWindows;

    SdlSession session_;
    WindowCore& core_;
    SDL_Window* window_ = nullptr;
    bool exposed_ = false;
    std::optional<PixelArea> windowArea_;  // to come back to from full screen
    Uint32 focusTime_ = 0;
    // The code each held key went down with; its release must match even if the layout or NumLock changed.
    std::array<int, SDL_NUM_SCANCODES> heldCodes_{};
};

std::vector<SdlWindow*> SdlWindow::liveWindows;

bool SdlWindow::open() {
    if (!session_.shows()) return false;
    const PixelSize largest = largestSize();
    window_ = sdl().createWindow(core_.title().c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                                 std::min(core_.logicalWidth(), largest.width),
                                 std::min(core_.logicalHeight(), largest.height), SDL_WINDOW_RESIZABLE);
    if (!window_) return false;
    const PixelSize client = clientSize();
    core_.setClientSize(client.width, client.height);
    sdl().raiseWindow(window_);
    sdl().pumpEvents();
    if (hasFlag(SDL_WINDOW_INPUT_FOCUS)) core_.handle(WindowEvent::focusGained());
    return true;
}

PixelSize SdlWindow::clientSize() const {
    PixelSize size{1, 1};
    sdl().getWindowSize(window_, &size.width, &size.height);
    return size;
}

PixelSize SdlWindow::screenSize() const {
    SDL_Rect bounds{0, 0, 1, 1};
    sdl().getDisplayBounds(0, &bounds);
    return {bounds.w, bounds.h};
}

std::vector<PixelArea> SdlWindow::screens() const {
    std::vector<PixelArea> all;
    for (int display = 0; display < sdl().getNumVideoDisplays(); ++display) {
        SDL_Rect bounds;
        if (sdl().getDisplayBounds(display, &bounds) == 0)
            all.push_back({bounds.x, bounds.y, bounds.w, bounds.h});
    }
    return all;
}

PixelArea SdlWindow::area() const {
    const PixelSize size = clientSize();
    PixelArea area{0, 0, size.width, size.height};
    sdl().getWindowPosition(window_, &area.x, &area.y);
    return area;
}

std::optional<PixelArea> SdlWindow::place() const {
    if (isFullscreen()) return windowArea_;
    return hasFlag(SDL_WINDOW_MINIMIZED) ? std::nullopt : std::optional(area());
}

void SdlWindow::setPlace(const PixelArea& area) {
    setSize(area.width, area.height);
    sdl().setWindowPosition(window_, area.x, area.y);
    const PixelSize client = clientSize();
    core_.setClientSize(client.width, client.height);
}

void SdlWindow::setFullscreen(bool on) {
    if (on) windowArea_ = area();
    sdl().setWindowFullscreen(window_, on ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
    const PixelSize client = clientSize();
    core_.handle(WindowEvent::resized(client.width, client.height));
}

// All screens side by side: what a window can usefully be stretched over.
PixelSize SdlWindow::largestSize() const {
    SDL_Rect all{0, 0, 1, 1};
    for (int display = 0; display < sdl().getNumVideoDisplays(); ++display) {
        SDL_Rect bounds;
        if (sdl().getDisplayBounds(display, &bounds) == 0) sdl().unionRect(&all, &bounds, &all);
    }
    return {all.w, all.h};
}

PixelSize SdlWindow::setSize(int width, int height) {
    const PixelSize largest = largestSize();
    sdl().setWindowSize(window_, std::min(width, largest.width), std::min(height, largest.height));
    return clientSize();
}

void SdlWindow::present() {
    SDL_Surface* target = sdl().getWindowSurface(window_);
    if (!target) return;
    const int width = core_.clientWidth();
    auto* pixels = const_cast<std::uint32_t*>(core_.dibPixels().data());
    SDL_Surface* picture = sdl().createRGBSurfaceWithFormatFrom(pixels, width, core_.clientHeight(), 32,
                                                                width * 4, SDL_PIXELFORMAT_RGB888);
    if (!picture) return;
    sdl().blitSurface(picture, nullptr, target, nullptr);
    sdl().freeSurface(picture);
    sdl().updateWindowSurface(window_);
}

bool SdlWindow::pumpEvents() {
    SDL_Event event;
    while (sdl().pollEvent(&event) != 0) dispatch(event, core_);
    return std::exchange(exposed_, false);
}

SdlWindow* SdlWindow::find(Uint32 id) {
    SDL_Window* window = sdl().getWindowFromID(id);
    for (SdlWindow* live : liveWindows)
        if (window && live->window_ == window) return live;
    return nullptr;
}

void SdlWindow::dispatch(const SDL_Event& event, WindowCore& updatedCore) {
    switch (event.type) {
        case SDL_QUIT:
            updatedCore.requestClose();
            break;
        case SDL_WINDOWEVENT:
            if (SdlWindow* window = find(event.window.windowID)) window->handleWindowEvent(event.window);
            break;
        case SDL_KEYDOWN:
        case SDL_KEYUP:
            if (SdlWindow* window = find(event.key.windowID)) window->handleKey(event.key);
            break;
        case SDL_TEXTINPUT:
            if (SdlWindow* window = find(event.text.windowID))
                for (const char* byte = event.text.text; *byte; ++byte)
                    window->core_.handle(WindowEvent::typed(static_cast<unsigned char>(*byte)));
            break;
        case SDL_MOUSEMOTION:
            if (SdlWindow* window = find(event.motion.windowID))
                window->core_.handle(WindowEvent::mouseMoved(event.motion.x, event.motion.y));
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            if (SdlWindow* window = find(event.button.windowID)) window->handleButton(event.button);
            break;
        case SDL_MOUSEWHEEL:
            if (SdlWindow* window = find(event.wheel.windowID))
                window->core_.handle(WindowEvent::wheelTurned(event.wheel.y));
            break;
        default:
            if (const auto change = sdlPads().handle(event)) reportPads(*change);
            break;
    }
}

// Pads belong to no window: the one with the focus hears of them.
void SdlWindow::reportPads(PadChange change) {
    for (SdlWindow* live : liveWindows)
        if (live->core_.focused()) tellPadChange(live->core_, change);
}

void SdlWindow::handleWindowEvent(const SDL_WindowEvent& event) {
    switch (event.event) {
        case SDL_WINDOWEVENT_SIZE_CHANGED:
            core_.handle(WindowEvent::resized(event.data1, event.data2));
            break;
        case SDL_WINDOWEVENT_EXPOSED:
            exposed_ = true;
            break;
        case SDL_WINDOWEVENT_FOCUS_GAINED:
            focusTime_ = event.timestamp;
            core_.handle(WindowEvent::focusGained());
            break;
        case SDL_WINDOWEVENT_FOCUS_LOST:
            heldCodes_.fill(0);
            core_.handle(WindowEvent::focusLost());
            break;
        case SDL_WINDOWEVENT_CLOSE:
            core_.handle(WindowEvent::closeRequested());
            break;
        default:
            break;
    }
}

void SdlWindow::handleKey(const SDL_KeyboardEvent& event) {
    const auto scancode = static_cast<std::size_t>(event.keysym.scancode);
    if (scancode >= heldCodes_.size()) return;
    if (event.type == SDL_KEYUP) {
        const int code = std::exchange(heldCodes_[scancode], 0);
        if (code != 0) core_.handle(WindowEvent::keyUp(code));
        return;
    }
    // With the focus SDL reports the keys that are held already, in the same instant. They were pressed for
    // another window and stay up until they are pressed for this one.
    const bool heldBeforeFocus = event.timestamp - focusTime_ <= 1;
    if (event.repeat != 0 || heldBeforeFocus) return;
    heldCodes_[scancode] = virtualKeyCode(event.keysym);
    core_.handle(WindowEvent::keyDown(heldCodes_[scancode]));
}

void SdlWindow::handleButton(const SDL_MouseButtonEvent& event) {
    MouseButton button{};
    if (!mouseButtonOf(event.button, button)) return;
    core_.handle(event.type == SDL_MOUSEBUTTONDOWN ? WindowEvent::buttonDown(button, event.x, event.y)
                                                   : WindowEvent::buttonUp(button, event.x, event.y));
    sdl().captureMouse(core_.anyButtonDown() ? SDL_TRUE : SDL_FALSE);
}

}  // namespace

std::unique_ptr<WindowBackend> createSystemWindow(WindowCore& core) {
    if (!SdlLibrary::load()) throw std::runtime_error("libSDL2-2.0.so.0, which shows windows, is missing");
    auto window = std::make_unique<SdlWindow>(core);
    if (!window->open()) return nullptr;
    return window;
}

bool systemDisplayIsNamed() {
    return environmentSets("DISPLAY") || environmentSets("WAYLAND_DISPLAY") ||
           environmentSets("SDL_VIDEODRIVER");
}

const char* systemVideoName() {
    return "sdl";
}

}  // namespace kelmora
