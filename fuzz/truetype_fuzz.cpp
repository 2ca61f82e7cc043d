#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "font/truetype_backend.h"

// Loads the input and draws some glyphs, small, so that the pixels stay few.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelmora::TrueTypeBackend backend;
    if (!backend.load({data, data + size})) return 0;
    for (const std::uint32_t codepoint : {0x20u, 0x41u, 0x42u, 0x43u, 0x44u, 0x45u, 0x1F600u}) {
        const kelmora::GlyphBitmap glyph =
            backend.rasterize(codepoint, 12 / std::max(backend.units_per_em(), 500.0));
        if (glyph.pixels.size() !=
            static_cast<std::size_t>(glyph.width) * static_cast<std::size_t>(glyph.height))
            std::abort();
    }
    return 0;
}
