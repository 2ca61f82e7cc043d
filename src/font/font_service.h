#pragma once

#include <cstdint>
#include <memory>
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
void vh_ttf_font_free(void* handle);
