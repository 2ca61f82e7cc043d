#include "shim/shim.h"

#include <algorithm>
#include <new>

#include "codec/png.h"
#include "font/font_service.h"
#include "image/pixel_memory.h"

int vh_has_metal_window() {
    return 1;
}
int vh_has_quartz_window() {
    return 0;
}
int vh_has_window() {
    return 1;
}
int vh_has_mixer() {
    return 1;
}
int vh_has_font() {
    return 1;
}
int vh_png_requires_postprocess() {
    return 0;
}

int vh_lua_version_major() {
    return 5;
}
int vh_lua_version_minor() {
    return 4;
}
int vh_lua_version_patch() {
    return 8;
}
double vh_lua_version_number() {
    return 5.4;
}

unsigned char* vh_load_png(const char* path, int* width, int* height) try {
    *width = 0;
    *height = 0;
    vh::png::Image image;
    if (!path || !vh::png::load_file(path, image) || image.pixels.empty()) return nullptr;
    kelmora::PixelMemory pixels = kelmora::allocatePixels(image.pixels.size());
    std::copy(image.pixels.begin(), image.pixels.end(), pixels.get());
    *width = image.width;
    *height = image.height;
    return pixels.release();
} catch (const std::bad_alloc&) {
    return nullptr;
}

bool vh_save_png(const char* path, const unsigned char* pixels, int width, int height) {
    return path && pixels && vh::png::save_png_rgba8_file(path, pixels, width, height);
}

bool vh_save_bmp(const char* path, const unsigned char* pixels, int width, int height) {
    return vh::png::save_bmp_rgba8_file(path, pixels, width, height);
}

bool vh_save_tga(const char* path, const unsigned char* pixels, int width, int height) {
    return vh::png::save_tga_rgba8_file(path, pixels, width, height);
}

bool vh_save_xcf(const char* path, const unsigned char* pixels, int width, int height) {
    return vh::png::save_xcf_rgba8_file(path, pixels, width, height);
}

void* vh_font_load(const char* path, float size) {
    return vh_ttf_font_load(path, size);
}
void vh_font_resize(void* font, float size) {
    vh_ttf_font_resize(font, size);
}
kelmora::PlushImage* vh_font_render(void* font, const char* utf8, int r, int g, int b, double a) {
    return vh_ttf_font_render(font, utf8, r, g, b, a);
}
bool vh_font_text_size(void* font, const char* utf8, int* width, int* height) {
    return vh_ttf_font_text_size(font, utf8, width, height);
}
std::optional<std::string> vh_font_wrap(void* font, const char* utf8, int width) {
    return vh_ttf_font_wrap(font, utf8, width);
}
void vh_font_free(void* font) {
    vh_ttf_font_free(font);
}
