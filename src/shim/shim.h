#pragma once

#include <optional>
#include <string>

#include "image/plush_image.h"
#include "platform/process.h"
#include "platform/speech.h"
#include "platform/system.h"
#include "platform/window.h"

// Everything that scripts reach of the system, and of the picture and font files, under one prefix.

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

// Pictures of every format that can be read. RGBA pixels of image/pixel_memory.h, which the caller owns. On
// failure, want of memory included, null, and both sizes 0.
[[nodiscard]] unsigned char* vh_load_png(const char* path, int* width, int* height);
[[nodiscard]] bool vh_save_png(const char* path, const unsigned char* pixels, int width, int height);
[[nodiscard]] bool vh_save_bmp(const char* path, const unsigned char* pixels, int width, int height);
[[nodiscard]] bool vh_save_tga(const char* path, const unsigned char* pixels, int width, int height);
[[nodiscard]] bool vh_save_xcf(const char* path, const unsigned char* pixels, int width, int height);

// Fonts. A handle is null when the file can't be used, and ended with vh_font_free; sizes are pixels to the
// em. The picture of a text is a new record that the caller owns, or null for a null handle or text.
void* vh_font_load(const char* path, float size);
void vh_font_resize(void* font, float size);
kelmora::PlushImage* vh_font_render(void* font, const char* utf8, int r, int g, int b, double a);
// False for a null handle; sizes are those of the picture.
bool vh_font_text_size(void* font, const char* utf8, int* width, int* height);
std::optional<std::string> vh_font_wrap(void* font, const char* utf8, int width);
void vh_font_free(void* font);
