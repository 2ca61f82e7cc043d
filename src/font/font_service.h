#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "base/pooled.h"
#include "font/font_backend.h"
#include "image/plush_image.h"

namespace kelmora {

// What scripts hold by address.
struct FontHandle : Pooled<FontHandle> {
    // Drawn on first use, kept until the size changes.
    const GlyphBitmap& glyph(std::uint32_t codepoint, double scale);

    std::unique_ptr<FontBackend> backend;
    float size = 1;  // pixels to the em, at least 1
    std::unordered_map<std::uint32_t, GlyphBitmap> glyphs;
};

}  // namespace kelmora

// A handle for the font, or null when it can't be used; ended with vh_ttf_font_free. Sizes are pixels to the
// em; one that is not above 1 means 1. A handle that is dead, or never was one, counts as null everywhere.
void* vh_ttf_font_load(const char* path, float size);
void* vh_ttf_font_load_memory(const void* bytes, std::uint32_t length, float size);
void vh_ttf_font_resize(void* handle, float size);
// The text in one colour on clear ground, as a new record that the caller owns. Text is UTF-8; lines end with
// a line feed. Null for a null handle or text. Raises std::length_error for an image beyond 2^31 pixels.
kelmora::PlushImage* vh_ttf_font_render(void* handle, const char* utf8, int r, int g, int b, double a);
// The size of that picture, without drawing it; false for a null handle or text.
bool vh_ttf_font_text_size(void* handle, const char* utf8, int* width, int* height);
// The text with line feeds where it must break to be no wider than so many pixels; nothing for a null handle
// or text.
std::optional<std::string> vh_ttf_font_wrap(void* handle, const char* utf8, int width);
void vh_ttf_font_free(void* handle);
