#include "font/font_service.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "base/whole_file.h"
#include "font/font_bytes.h"
#include "font/text_layout.h"
#include "font/text_lines.h"
#include "font/text_wrap.h"
#include "font/truetype_backend.h"
#include "font/type1_backend.h"
#include "image/pixel_memory.h"

namespace kelmora {
namespace {

constexpr std::uint32_t trueTypeVersion = 0x00010000;
constexpr std::uint32_t appleTrueType = 0x74727565;  // "true"
constexpr std::uint8_t binaryType1 = 0x80;
constexpr std::uint8_t textType1 = '%';

float usableSize(float size) {
    return size > 1.0f ? size : 1.0f;
}

template <typename Backend>
std::unique_ptr<FontBackend> tryBackend(const std::vector<std::uint8_t>& bytes) {
    auto backend = std::make_unique<Backend>();
    if (!backend->load(bytes)) return nullptr;
    return backend;
}

bool isTrueType(const FontBytes& file) {
    if (!file.has(0, 4)) return false;
    return file.u32(0) == trueTypeVersion || file.u32(0) == appleTrueType;
}

std::unique_ptr<FontBackend> loadBackend(const std::vector<std::uint8_t>& bytes) {
    if (isTrueType(FontBytes(bytes))) return tryBackend<TrueTypeBackend>(bytes);
    if (bytes[0] == binaryType1 || bytes[0] == textType1) return tryBackend<Type1Backend>(bytes);
    return nullptr;
}

// Coverage of a whole text, top row first.
struct Canvas {
    void draw(const LineLayout& line, LayoutUnit lineY) {
        for (const GlyphPlacement& placement : line.glyphs)
            drawGlyph(*placement.glyph, placement.x, placement.y + lineY);
    }

    LayoutUnit width;
    LayoutUnit height;
    std::vector<std::uint8_t> pixels;

private:
    void drawGlyph(const GlyphBitmap& glyph, LayoutUnit left, LayoutUnit top) {
        const LayoutUnit firstRow = std::max<LayoutUnit>(-top, 0);
        const LayoutUnit endRow = std::min<LayoutUnit>(glyph.height, height - top);
        const LayoutUnit firstColumn = std::max<LayoutUnit>(-left, 0);
        const LayoutUnit endColumn = std::min<LayoutUnit>(glyph.width, width - left);
        for (LayoutUnit row = firstRow; row < endRow; ++row) {
            const std::uint8_t* from = glyph.pixels.data() + row * glyph.width;
            std::uint8_t* to = pixels.data() + (row + top) * width + left;
            for (LayoutUnit column = firstColumn; column < endColumn; ++column)
                to[column] = merge(from[column], to[column]);
        }
    }

    static std::uint8_t merge(unsigned coverage, unsigned below) {
        return static_cast<std::uint8_t>(coverage + below * (255 - coverage) / 255);
    }
};

Canvas drawText(FontHandle& font, const std::vector<std::uint32_t>& codepoints) {
    std::vector<LineLayout> lines;
    Canvas canvas{1, 0, {}};
    for (const auto& line : splitLines(codepoints)) {
        lines.push_back(layOutLine(font, line));
        canvas.width = std::max(canvas.width, lines.back().width);
        canvas.height += lines.back().height;
    }
    if (canvas.width > INT32_MAX / canvas.height)
        throw std::length_error("cannot create std::vector larger than max_size()");
    canvas.pixels.resize(static_cast<std::size_t>(canvas.width * canvas.height));
    LayoutUnit lineY = 0;
    for (const LineLayout& line : lines) {
        canvas.draw(line, lineY);
        lineY += line.height;
    }
    return canvas;
}

struct Colour {
    int r;
    int g;
    int b;
    double a;
};

std::uint8_t toChannel(int value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0, 255));
}

unsigned toAlpha(double value) {
    return value > 0 ? static_cast<unsigned>(std::lround(std::min(value, 255.0))) : 0;
}

std::unique_ptr<PlushImage> colourCanvas(const Canvas& canvas, const Colour& colour) {
    const unsigned alpha = toAlpha(colour.a);
    std::array<std::array<std::uint8_t, 4>, 256> pixelOf;
    for (unsigned coverage = 0; coverage < 256; ++coverage)
        pixelOf[coverage] = {toChannel(colour.r), toChannel(colour.g), toChannel(colour.b),
                             static_cast<std::uint8_t>(alpha * coverage / 255)};
    PixelMemory pixels = allocatePixels(canvas.pixels.size() * 4);
    unsigned char* to = pixels.get();
    for (const std::uint8_t coverage : canvas.pixels) to = std::copy_n(pixelOf[coverage].data(), 4, to);
    auto image = std::make_unique<PlushImage>();
    image->width = static_cast<std::int32_t>(canvas.width);
    image->height = static_cast<std::int32_t>(canvas.height);
    image->pixels = pixels.release();
    return image;
}

std::unique_ptr<PlushImage> emptyImage() {
    auto image = std::make_unique<PlushImage>();
    image->pixels = allocateClearPixels(4).release();
    return image;
}

// Scripts hold plain pointers, also to fonts that they have killed.
std::unordered_map<const void*, std::unique_ptr<FontHandle>>& liveFonts =
    *new std::unordered_map<const void*, std::unique_ptr<FontHandle>>;

FontHandle* asFont(const void* handle) {
    const auto found = liveFonts.find(handle);
    return found == liveFonts.end() ? nullptr : found->second.get();
}

}  // namespace

const GlyphBitmap& FontHandle::glyph(std::uint32_t codepoint, double scale) {
    const auto known = glyphs.find(codepoint);
    if (known != glyphs.end()) return known->second;
    return glyphs.emplace(codepoint, backend->rasterize(codepoint, scale)).first->second;
}

}  // namespace kelmora

using namespace kelmora;

void* vh_ttf_font_load(const char* path, float size) {
    if (!path) return nullptr;
    const auto bytes = readWholeFileBytes(path);
    if (!bytes || !std::in_range<std::uint32_t>(bytes->size())) return nullptr;
    return vh_ttf_font_load_memory(bytes->data(), static_cast<std::uint32_t>(bytes->size()), size);
}

void* vh_ttf_font_load_memory(const void* bytes, std::uint32_t length, float size) {
    if (!bytes || length == 0) return nullptr;
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    auto font = std::make_unique<FontHandle>();
    font->backend = loadBackend({first, first + length});
    if (!font->backend) return nullptr;
    font->size = usableSize(size);
    FontHandle* handle = font.get();
    liveFonts.emplace(handle, std::move(font));
    return handle;
}

void vh_ttf_font_resize(void* handle, float size) {
    FontHandle* font = asFont(handle);
    if (!font) return;
    font->size = usableSize(size);
    font->glyphs.clear();
}

PlushImage* vh_ttf_font_render(void* handle, const char* utf8, int r, int g, int b, double a) {
    FontHandle* font = asFont(handle);
    if (!font || !utf8) return nullptr;
    if (*utf8 == '\0') return emptyImage().release();
    const std::vector<std::uint32_t> codepoints = decodeUtf8(utf8);
    font->glyphs.reserve(font->glyphs.size() + codepoints.size());
    return colourCanvas(drawText(*font, codepoints), {r, g, b, a}).release();
}

bool vh_ttf_font_text_size(void* handle, const char* utf8, int* width, int* height) {
    *width = 0;
    *height = 0;
    FontHandle* font = asFont(handle);
    if (!font || !utf8) return false;
    if (*utf8 == '\0') return true;
    const TextSize size = sizeOfLines(*font, splitLines(decodeUtf8(utf8)));
    const auto held = [](LayoutUnit value) {
        return static_cast<int>(std::min<LayoutUnit>(value, INT32_MAX));
    };
    *width = held(size.width);
    *height = held(size.height);
    return true;
}

std::optional<std::string> vh_ttf_font_wrap(void* handle, const char* utf8, int width) {
    FontHandle* font = asFont(handle);
    if (!font || !utf8) return std::nullopt;
    return wrapText(*font, utf8, width);
}

void vh_ttf_font_free(void* handle) {
    liveFonts.erase(handle);
}
