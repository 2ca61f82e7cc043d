#include "codec/apng.h"

#include <algorithm>

#include "codec/over.h"
#include "codec/png_decode.h"

namespace vh::png {
namespace {

constexpr std::size_t pixelSize = 4;
constexpr std::uint8_t blendSource = 0;

// A canvas may be larger than all that is drawn on it, so that a few bytes can ask for gigabytes of nothing.
// Beyond this size its pixels must be at least as many as the data could possibly fill.
constexpr std::uint64_t largestSparseCanvas = std::uint64_t{1} << 25;

std::uint64_t canvas_pixels(const Header& header) {
    return std::uint64_t{header.width} * header.height;
}

bool canvas_is_plausible(const ParsedPng& parsed) {
    std::uint64_t data = parsed.idat_bytes;
    for (const ParsedPng::Frame& frame : parsed.frames) {
        for (const ByteSpan span : frame.spans) data += span.size();
    }
    return canvas_pixels(parsed.header) <= std::max(largestSparseCanvas, data * largestExpansion);
}

class Canvas {
public:
    Canvas(const Header& header, kelmora::ByteBuffer& pixels) : header_(header), pixels_(pixels) {
        pixels_.clear();
    }

    // Over clear black both ways of blending come to a copy, so a first layer of full size is the canvas.
    bool lay(const ParsedPng::Frame& frame, kelmora::ByteBuffer& layer) {
        if (pixels_.empty()) {
            if (frame.width == header_.width && frame.height == header_.height) {
                pixels_.swap(layer);
                return true;
            }
            const std::uint64_t size = canvas_pixels(header_) * pixelSize;
            if (size > pixels_.max_size()) return false;
            pixels_.assign(static_cast<std::size_t>(size), 0);
        }
        for (std::size_t y = 0; y < frame.height; ++y) lay_row(frame, layer, y);
        return true;
    }

private:
    void lay_row(const ParsedPng::Frame& frame, const kelmora::ByteBuffer& layer, std::size_t y) {
        const std::size_t width = std::size_t{frame.width} * pixelSize;
        const unsigned char* from = layer.data() + y * width;
        unsigned char* to =
            pixels_.data() + ((y + frame.y_offset) * header_.width + frame.x_offset) * pixelSize;
        if (frame.blend_op == blendSource) {
            std::copy_n(from, width, to);
            return;
        }
        for (std::size_t x = 0; x < width; x += pixelSize) compose_over(from + x, to + x);
    }

    const Header& header_;
    kelmora::ByteBuffer& pixels_;
};

bool takes_idat(const ParsedPng::Frame& frame) {
    return frame.uses_idat;
}

}  // namespace

bool decode_apng_squashed(const ParsedPng& parsed, const DecodeTables& tables, kelmora::ByteBuffer& output) {
    const Header& header = parsed.header;
    if (!within_pixel_limit(header.width, header.height) || !canvas_is_plausible(parsed)) return false;
    Canvas canvas(header, output);
    kelmora::ByteBuffer layer;
    if (std::none_of(parsed.frames.begin(), parsed.frames.end(), takes_idat)) {
        ParsedPng::Frame whole;
        whole.width = header.width;
        whole.height = header.height;
        if (!decode_png_frame(header, parsed.idat, tables, layer) || !canvas.lay(whole, layer)) return false;
    }
    for (const ParsedPng::Frame& frame : parsed.frames) {
        Header frame_header = header;
        frame_header.width = frame.width;
        frame_header.height = frame.height;
        if (!decode_png_frame(frame_header, frame.spans, tables, layer) || !canvas.lay(frame, layer))
            return false;
    }
    return true;
}

}  // namespace vh::png
