#pragma once

#include "image/plush_image.h"
#include "platform/key_table.h"
#include "platform/letterbox.h"

// The windows of the system it runs on. A null window is accepted everywhere: the call does nothing or gives
// its neutral value. Windows and keys belong to the script thread.

namespace kelmora {
struct WindowsWindow;
}

// Window. Sizes are pixels of the client area, raised to at least 1. A null title means "VesperMoon".
// Null when there is no display; the caller ends the window with vh_destroyWindow. KELMORA_VIDEO chooses the
// display ("memory" or the system's, "sdl" or "gdi"); an unknown name, or a recorded input that cannot be
// read, raises std::runtime_error.
kelmora::WindowsWindow* vh_createWindow(const char* title, int width, int height);
// Hides the window and makes it ask to be closed; the record lives on.
void vh_closeWindow(kelmora::WindowsWindow* window);
void vh_destroyWindow(kelmora::WindowsWindow* window);
// A copy that the caller releases with free(); null for a null window.
char* vh_getWindowTitle(const kelmora::WindowsWindow* window);
// The size the game asked for; 0 and 0 for a null window.
void vh_getWindowSize(const kelmora::WindowsWindow* window, int* width, int* height);
void vh_setWindowSize(kelmora::WindowsWindow* window, int width, int height);
void vh_setWindowTitle(kelmora::WindowsWindow* window, const char* title);
// Copies the picture; the next vh_updateWindow shows it.
void vh_pushImage(kelmora::WindowsWindow* window, const kelmora::PlushImage* image);
// Takes the waiting events, shows what changed, and makes this the window whose keys are read.
void vh_updateWindow(kelmora::WindowsWindow* window);
// True for a null window.
bool vh_windowShouldClose(const kelmora::WindowsWindow* window);
// Full screen keeps the picture's shape. Alt+Return and F11 toggle it too, with the next vh_updateWindow.
void vh_setFullscreen(kelmora::WindowsWindow* window, bool on);
bool vh_isFullscreen(const kelmora::WindowsWindow* window);
void vh_setScaling(kelmora::WindowsWindow* window, kelmora::Scaling scaling);
// A small file keeps size, place and full screen from one run to the next: read once after the window was
// made, written before it is destroyed. Files that are missing, bad or of a game of another size change
// nothing.
void vh_restorePlace(kelmora::WindowsWindow* window, const char* path);
void vh_rememberPlace(const kelmora::WindowsWindow* window, const char* path);
// The colour around and behind the picture.
void vh_clearWindow(kelmora::WindowsWindow* window, unsigned char red, unsigned char green,
                    unsigned char blue);
// What the window shows, as a new record that the caller owns, or null.
kelmora::PlushImage* vh_captureWindow(const kelmora::WindowsWindow* window);
// Puts UTF-8 text into the system's clipboard. False where it is not taken.
bool vh_copyText(kelmora::WindowsWindow* window, const char* text);
// In pixels of the pushed picture; -1 and -1 for a null window.
void vh_getMousePosition(const kelmora::WindowsWindow* window, int* x, int* y);
// 0 left, 1 right, 2 middle; any other button is up.
bool vh_getMouseButtonState(const kelmora::WindowsWindow* window, int button);
// The keys of the window updated last; all up while it lacks the focus. One record, overwritten by each call.
const kelmora::KeyState* vh_updateKeyboardState();

// By virtual-key code, of the window updated last, as `vh_updateKeyboardState` sees it.
bool vh_isKeyDown(int code);
// Takes the name of the first press since the last look (see PressLog), the oldest first; null when there is
// none. A press that is over already counts too.
const char* vh_takePress(kelmora::WindowsWindow* window);
// Takes the notches that the wheel was turned since the last look, away from its user above 0.
int vh_takeWheel(kelmora::WindowsWindow* window);

// Touch Bar, for scripts that call it unconditionally: there is none, and no button is ever pressed.
void vh_setTouchBarButtonText(kelmora::WindowsWindow* window, int button, const char* text);
void vh_setTouchBarButtonImage(kelmora::WindowsWindow* window, int button, const kelmora::PlushImage* image);
void vh_clearTouchBar(kelmora::WindowsWindow* window);
bool vh_getTouchBarButtonState(const kelmora::WindowsWindow* window, int button);

// Hand-held devices: no keys to register, orientation always 0.
void vh_sailfish_register_key(int key);
int vh_sailfish_left_orientation();

// Who writes the pictures that a recorded input asks for; the platform knows no picture files. Without one
// such a recording raises std::runtime_error.
using PictureWriter = bool (*)(const char* path, const unsigned char* pixels, int width, int height);
void platform_set_picture_writer(PictureWriter writer);
