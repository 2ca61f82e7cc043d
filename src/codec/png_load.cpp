#include "codec/png_load.h"

#include <utility>

#include "codec/apng.h"
#include "codec/png_decode.h"

namespace vh::png {

bool load_png(ByteSpan file, Image& image) {
    ParsedPng parsed;
    DecodeTables tables;
    if (!parse_png(file, parsed) || !build_tables(parsed, tables)) return false;
    kelmora::ByteBuffer pixels;
    const bool decoded = parsed.actl_seen ? decode_apng_squashed(parsed, tables, pixels)
                                          : decode_png_frame(parsed.header, parsed.idat, tables, pixels);
    if (!decoded) return false;
    image.width = static_cast<int>(parsed.header.width);
    image.height = static_cast<int>(parsed.header.height);
    image.pixels = std::move(pixels);
    return true;
}

}  // namespace vh::png
