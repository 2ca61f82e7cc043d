#include <algorithm>
#include <cstring>
#include <exception>
#include <string>
#include <utility>

#include "platform/window_backend.h"
#include "platform/windows/windows_api.h"
#include "platform/windows/xinput_pads.h"

namespace kelmora {
namespace {

constexpr const char* className = "KelmoraVesperWindow";
constexpr std::size_t longestClipboardText = 1 << 20;
constexpr DWORD windowStyle = WS_OVERLAPPEDWINDOW;

// Pixels of ours are pixels of the screen.
void refuseScaling() {
    if (const auto setAware = systemFunction<BOOL WINAPI()>("user32.dll", "SetProcessDPIAware")) setAware();
}

PixelSize outerSize(int width, int height) {
    RECT area{0, 0, width, height};
    AdjustWindowRectEx(&area, windowStyle, FALSE, 0);
    return {static_cast<int>(area.right - area.left), static_cast<int>(area.bottom - area.top)};
}

// All screens side by side: what a window can usefully be stretched over.
PixelSize largestSize() {
    return {std::max(GetSystemMetrics(SM_CXVIRTUALSCREEN), 1),
            std::max(GetSystemMetrics(SM_CYVIRTUALSCREEN), 1)};
}

// Alt or F10 alone, which would hold the next key back for a menu that there is none of.
bool isMenuKey(WPARAM command, LPARAM character) {
    return (command & 0xfff0) == SC_KEYMENU && character == 0;
}

// UTF-16 with line ends of two characters, as other programs want it.
std::wstring clipboardUnits(const std::string& text) {
    std::string lines;
    for (const char c : text) lines += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const int length = static_cast<int>(lines.size());
    std::wstring units(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, lines.data(), length, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, lines.data(), length, units.data(), static_cast<int>(units.size()));
    return units;
}

BOOL CALLBACK addScreen(HMONITOR, HDC, LPRECT area, LPARAM list) {
    reinterpret_cast<std::vector<PixelArea>*>(list)->push_back(
        {static_cast<int>(area->left), static_cast<int>(area->top),
         static_cast<int>(area->right - area->left), static_cast<int>(area->bottom - area->top)});
    return TRUE;
}

class GdiWindow : public WindowBackend {
public:
    explicit GdiWindow(WindowCore& core) : core_(core) {}
    ~GdiWindow() override;

    bool open();

    bool pumpEvents() override;
    void present() override;
    void setTitle(const char* title) override { SetWindowTextA(window_, title); }
    PixelSize setSize(int width, int height) override;
    void hide() override { ShowWindow(window_, SW_HIDE); }
    PixelSize screenSize() const override;
    void setFullscreen(bool on) override;
    bool isFullscreen() const override { return fullscreen_; }
    std::optional<PixelArea> place() const override;
    void setPlace(const PixelArea& area) override;
    bool copyText(const std::string& text) override;
    std::vector<PixelArea> screens() const override;

private:
    static bool registerClass();
    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM first, LPARAM second);

    // True when the message needs nothing more.
    bool handle(UINT message, WPARAM first, LPARAM second);
    void handleSize(WPARAM kind, LPARAM size);
    void handleMouse(UINT message, LPARAM position);
    void turnWheel(int delta);
    void paint();
    void show(HDC target);
    PixelArea area() const;
    PixelSize clientSize() const;

    WindowCore& core_;
    HWND window_ = nullptr;
    HDC deviceContext_ = nullptr;
    int wheelDelta_ = 0;
    bool fullscreen_ = false;
    PixelArea windowArea_;               // to come back to from full screen
    WINDOWPLACEMENT windowPlacement_{};  // likewise
    std::exception_ptr failure_;         // of a message, until the pump can raise it
};

GdiWindow::~GdiWindow() {
    if (deviceContext_) ReleaseDC(window_, deviceContext_);
    if (!window_) return;
    SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
}

bool GdiWindow::registerClass() {
    WNDCLASSEXA description{};
    description.cbSize = sizeof description;
    description.style = CS_HREDRAW | CS_VREDRAW | CS_OWNDC;
    description.lpfnWndProc = windowProcedure;
    description.hInstance = GetModuleHandleA(nullptr);
    description.hCursor = LoadCursor(nullptr, IDC_ARROW);
    description.lpszClassName = className;
    return RegisterClassExA(&description) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool GdiWindow::open() {
    refuseScaling();
    static const bool registered = registerClass();
    if (!registered) return false;
    const PixelSize largest = largestSize();
    const PixelSize outer = outerSize(std::min(core_.logicalWidth(), largest.width),
                                      std::min(core_.logicalHeight(), largest.height));
    const PixelSize screen = screenSize();
    CreateWindowExA(0, className, core_.title().c_str(), windowStyle, (screen.width - outer.width) / 2,
                    (screen.height - outer.height) / 2, outer.width, outer.height, nullptr, nullptr,
                    GetModuleHandleA(nullptr), this);
    if (!window_) return false;
    deviceContext_ = GetDC(window_);
    if (!deviceContext_) return false;
    const PixelSize client = clientSize();
    core_.setClientSize(client.width, client.height);
    ShowWindow(window_, SW_SHOW);
    if (SetForegroundWindow(window_)) core_.handle(WindowEvent::focusGained());
    return true;
}

PixelSize GdiWindow::clientSize() const {
    RECT area{};
    GetClientRect(window_, &area);
    return {std::max(static_cast<int>(area.right), 1), std::max(static_cast<int>(area.bottom), 1)};
}

PixelSize GdiWindow::screenSize() const {
    return {GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

PixelSize GdiWindow::setSize(int width, int height) {
    const PixelSize largest = largestSize();
    const PixelSize outer = outerSize(std::min(width, largest.width), std::min(height, largest.height));
    SetWindowPos(window_, nullptr, 0, 0, outer.width, outer.height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return clientSize();
}

PixelArea GdiWindow::area() const {
    const PixelSize size = clientSize();
    POINT corner{};
    ClientToScreen(window_, &corner);
    return {static_cast<int>(corner.x), static_cast<int>(corner.y), size.width, size.height};
}

std::optional<PixelArea> GdiWindow::place() const {
    if (fullscreen_) return windowArea_;
    return IsIconic(window_) ? std::nullopt : std::optional(area());
}

void GdiWindow::setPlace(const PixelArea& area) {
    RECT outer{area.x, area.y, area.x + area.width, area.y + area.height};
    AdjustWindowRectEx(&outer, windowStyle, FALSE, 0);
    SetWindowPos(window_, nullptr, outer.left, outer.top, outer.right - outer.left, outer.bottom - outer.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

std::vector<PixelArea> GdiWindow::screens() const {
    std::vector<PixelArea> all;
    EnumDisplayMonitors(nullptr, nullptr, addScreen, reinterpret_cast<LPARAM>(&all));
    return all;
}

bool GdiWindow::copyText(const std::string& text) {
    if (text.size() > longestClipboardText) return false;
    const std::wstring units = clipboardUnits(text);
    const std::size_t bytes = (units.size() + 1) * sizeof(wchar_t);
    if (!OpenClipboard(window_)) return false;
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    void* place = memory ? GlobalLock(memory) : nullptr;
    bool taken = false;
    if (place) {
        std::memcpy(place, units.c_str(), bytes);
        GlobalUnlock(memory);
        taken = EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
    }
    if (memory && !taken) GlobalFree(memory);
    CloseClipboard();
    return taken;
}

// A window without a frame as large as its screen, which is what the system takes for full screen.
void GdiWindow::setFullscreen(bool on) {
    fullscreen_ = on;
    constexpr UINT flags = SWP_NOOWNERZORDER | SWP_FRAMECHANGED;
    if (!on) {
        SetWindowLongPtrA(window_, GWL_STYLE, static_cast<LONG_PTR>(windowStyle | WS_VISIBLE));
        SetWindowPlacement(window_, &windowPlacement_);
        SetWindowPos(window_, nullptr, 0, 0, 0, 0, flags | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER);
        return;
    }
    windowArea_ = area();
    windowPlacement_.length = sizeof windowPlacement_;
    GetWindowPlacement(window_, &windowPlacement_);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoA(MonitorFromWindow(window_, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& screen = monitor.rcMonitor;
    SetWindowLongPtrA(window_, GWL_STYLE, static_cast<LONG_PTR>(WS_POPUP | WS_VISIBLE));
    SetWindowPos(window_, HWND_TOP, screen.left, screen.top, screen.right - screen.left,
                 screen.bottom - screen.top, flags);
}

void GdiWindow::present() {
    show(deviceContext_);
    ValidateRect(window_, nullptr);
}

void GdiWindow::show(HDC target) {
    const int width = core_.clientWidth();
    const int height = core_.clientHeight();
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = width;
    format.bmiHeader.biHeight = -height;  // rows from the top
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    format.bmiHeader.biCompression = BI_RGB;
    SetDIBitsToDevice(target, 0, 0, static_cast<DWORD>(width), static_cast<DWORD>(height), 0, 0, 0,
                      static_cast<UINT>(height), core_.dibPixels().data(), &format, DIB_RGB_COLORS);
}

// Painting is a message like any other here, so the picture is never lost to the caller.
bool GdiWindow::pumpEvents() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) core_.requestClose();
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
    const PadChange change = xinputPads().poll();
    if (core_.focused()) tellPadChange(core_, change);
    return false;
}

// Nothing may be thrown through the system's frames.
LRESULT CALLBACK GdiWindow::windowProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_NCCREATE) {
        auto* created = static_cast<GdiWindow*>(reinterpret_cast<CREATESTRUCTA*>(second)->lpCreateParams);
        created->window_ = window;
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
    }
    auto* self = reinterpret_cast<GdiWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    try {
        if (self && self->handle(message, first, second)) return message == WM_ERASEBKGND ? 1 : 0;
    } catch (...) {
        self->failure_ = std::current_exception();
    }
    return DefWindowProcA(window, message, first, second);
}

bool GdiWindow::handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_SIZE:
            handleSize(first, second);
            return true;
        case WM_SETFOCUS:
            core_.handle(WindowEvent::focusGained());
            return true;
        case WM_KILLFOCUS:
            core_.handle(WindowEvent::focusLost());
            return true;
        case WM_PAINT:
            paint();
            return true;
        case WM_CLOSE:
            core_.handle(WindowEvent::closeRequested());
            return true;
        case WM_ERASEBKGND:
            return true;
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            core_.handle(WindowEvent::keyDown(static_cast<int>(first)));
            return message == WM_KEYDOWN;
        case WM_KEYUP:
        case WM_SYSKEYUP:
            core_.handle(WindowEvent::keyUp(static_cast<int>(first)));
            return message == WM_KEYUP;
        case WM_CHAR:
            if (first >= ' ' && first < 127)
                core_.handle(WindowEvent::typed(static_cast<unsigned char>(first)));
            return true;
        case WM_SYSCHAR:
            return first == keyReturn;  // else Alt+Return beeps
        case WM_SYSCOMMAND:
            return isMenuKey(first, second);
        case WM_MOUSEWHEEL:
            turnWheel(GET_WHEEL_DELTA_WPARAM(first));
            return true;
        case WM_MOUSEMOVE:
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
        case WM_LBUTTONUP:
        case WM_RBUTTONUP:
        case WM_MBUTTONUP:
            handleMouse(message, second);
            return true;
        default:
            return false;
    }
}

void GdiWindow::handleSize(WPARAM kind, LPARAM size) {
    if (kind != SIZE_MINIMIZED) core_.handle(WindowEvent::resized(LOWORD(size), HIWORD(size)));
}

// Fine wheels report parts of a notch.
void GdiWindow::turnWheel(int delta) {
    wheelDelta_ += delta;
    const int notches = wheelDelta_ / WHEEL_DELTA;
    wheelDelta_ -= notches * WHEEL_DELTA;
    core_.handle(WindowEvent::wheelTurned(notches));
}

// A held button keeps the mouse's messages coming from outside of the window.
void GdiWindow::handleMouse(UINT message, LPARAM position) {
    const int x = GET_X_LPARAM(position);
    const int y = GET_Y_LPARAM(position);
    const auto press = [&](MouseButton button) {
        core_.handle(WindowEvent::buttonDown(button, x, y));
        SetCapture(window_);
    };
    const auto release = [&](MouseButton button) {
        core_.handle(WindowEvent::buttonUp(button, x, y));
        if (!core_.anyButtonDown()) ReleaseCapture();
    };
    switch (message) {
        case WM_LBUTTONDOWN:
            return press(MouseButton::left);
        case WM_RBUTTONDOWN:
            return press(MouseButton::right);
        case WM_MBUTTONDOWN:
            return press(MouseButton::middle);
        case WM_LBUTTONUP:
            return release(MouseButton::left);
        case WM_RBUTTONUP:
            return release(MouseButton::right);
        case WM_MBUTTONUP:
            return release(MouseButton::middle);
        default:
            core_.handle(WindowEvent::mouseMoved(x, y));
    }
}

void GdiWindow::paint() {
    core_.composeIfDirty();
    PAINTSTRUCT painting;
    if (const HDC target = BeginPaint(window_, &painting)) show(target);
    EndPaint(window_, &painting);
}

}  // namespace

std::unique_ptr<WindowBackend> createSystemWindow(WindowCore& core) {
    auto window = std::make_unique<GdiWindow>(core);
    if (!window->open()) return nullptr;
    return window;
}

bool systemDisplayIsNamed() {
    return true;
}

const char* systemVideoName() {
    return "gdi";
}

}  // namespace kelmora
