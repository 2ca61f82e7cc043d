#pragma once

#include "image/plush_image.h"
#include "platform/key_table.h"

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
// The colour around and behind the picture.
void vh_clearWindow(kelmora::WindowsWindow* window, unsigned char red, unsigned char green,
                    unsigned char blue);
// What the window shows, as a new record that the caller owns, or null.
kelmora::PlushImage* vh_captureWindow(const kelmora::WindowsWindow* window);
// In pixels of the pushed picture; -1 and -1 for a null window.
void vh_getMousePosition(const kelmora::WindowsWindow* window, int* x, int* y);
// 0 left, 1 right, 2 middle; any other button is up.
bool vh_getMouseButtonState(const kelmora::WindowsWindow* window, int button);
// The keys of the window updated last; all up while it lacks the focus. One record, overwritten by each call.
const kelmora::KeyState* vh_updateKeyboardState();

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
