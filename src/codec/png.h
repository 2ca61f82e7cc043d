#pragma once

#include "base/byte_buffer.h"

namespace vh::png {

// A decoded picture: RGBA, 8 bits a channel, straight alpha, rows from the top without padding.
struct Image {
    int width = 0;
    int height = 0;
    kelmora::ByteBuffer pixels;
};

// What a file's first bytes (for TGA its header or its last bytes) make of it. The numbers are fixed.
enum Format : int { UnknownFormat = 0, PngFormat = 1, BmpFormat = 2, TgaFormat = 3, XcfFormat = 4 };
int detect_format(const unsigned char* data, unsigned size);

// Decodes a picture of any known format. False leaves `image` at 0 x 0 without pixels.
[[nodiscard]] bool load_memory(const unsigned char* data, unsigned size, Image& image);
[[nodiscard]] bool load_file(const char* path, Image& image);

// Writes RGBA pixels as an uncompressed PNG. True when all of it was written and the file closed.
[[nodiscard]] bool save_png_rgba8_file(const char* path, const unsigned char* pixels, int width, int height);
[[nodiscard]] bool save_rgba8_file(const char* path, const unsigned char* pixels, int width, int height);
// The same in other formats, nothing compressed either. A picture that is clear throughout comes back opaque
// from a BMP file.
[[nodiscard]] bool save_bmp_rgba8_file(const char* path, const unsigned char* pixels, int width, int height);
[[nodiscard]] bool save_tga_rgba8_file(const char* path, const unsigned char* pixels, int width, int height);
// One layer.
[[nodiscard]] bool save_xcf_rgba8_file(const char* path, const unsigned char* pixels, int width, int height);

}  // namespace vh::png
