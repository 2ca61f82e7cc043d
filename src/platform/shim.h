#pragma once

#include <cstdint>
#include <cstdio>

#include "platform/key_table.h"
#include "plush/plush_image.h"

// Everything the engine asks of the system it runs on. A null window is accepted everywhere: the call does
// nothing or gives its neutral value. Windows, keys and pipes belong to the script thread.

namespace kelmora {
struct WindowsWindow;
}

// Capabilities: 1 or 0.
int vh_has_metal_window();
int vh_has_quartz_window();
int vh_has_window();
int vh_has_mixer();
int vh_has_font();
int vh_png_requires_postprocess();

int vh_lua_version_major();
int vh_lua_version_minor();
int vh_lua_version_patch();
double vh_lua_version_number();

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

// RGBA pixels allocated with new[], which the caller owns. On failure null, and both sizes 0.
unsigned char* vh_load_png(const char* path, int* width, int* height);
bool vh_save_png(const char* path, const unsigned char* pixels, int width, int height);

// Fonts. A handle is null when the file can't be used, and ended with vh_font_free; sizes are pixels to the
// em. The picture of a text is a new record that the caller owns, or null for a null handle or text.
void* vh_font_load(const char* path, float size);
void vh_font_resize(void* font, float size);
kelmora::PlushImage* vh_font_render(void* font, const char* utf8, int r, int g, int b, double a);
void vh_font_free(void* font);

// A value below 1 returns at once.
void vh_sleep_ms(int milliseconds);

// Runs a command in the system's shell. A mode that starts with "w" writes to its input, any other reads its
// output; its other standard handles lead nowhere. The stream is bytes. Null on failure.
std::FILE* vh_windows_popen(const char* command, const char* mode);
// Closes the stream, waits for the command and gives its exit code (128 and the signal's number if one ended
// it). A stream that vh_windows_popen did not open is just closed.
int vh_windows_pclose(std::FILE* stream);

// Facts about the machine, as text with its closing zero. False, with an empty text where there is room, when
// the fact is not to be had or does not fit.
// The directory of the running executable (the file itself, not a link to it), with its last separator.
bool windows_executable_directory(char* buffer, unsigned size);
bool windows_user_name(char* buffer, unsigned size);
// System and architecture, like "Linux x86_64" or "Windows x86".
bool windows_platform_name(char* buffer, unsigned size);
bool windows_version_string(char* buffer, unsigned size);
bool windows_processor_name(char* buffer, unsigned size);
// With its last separator.
bool windows_temp_directory(char* buffer, unsigned size);

// Replaces a file's content as a whole: written beside it, pushed to the disk, then renamed over it. A
// failure on the way leaves the old file as it was.
bool platform_replace_file(const char* path, const void* content, std::size_t size);

bool platform_is_windows();
bool platform_stdout_is_terminal();
// The lowest address of the calling thread's stack, or 0 if unknown. Slow: ask once a thread.
std::uintptr_t platform_stack_low_address();
// For the calling thread, where its user may: a step above the usual.
void platform_raise_thread_priority();
