#include "codec/xcf_read.h"

#include <algorithm>
#include <utility>

#include "codec/over.h"
#include "codec/pixel_limit.h"
#include "codec/xcf_pixels.h"

namespace vh::png {
namespace {

// Lays one layer on the canvas, cut to it.
class LayerOnCanvas : public XcfPixelSink {
public:
    LayerOnCanvas(const XcfImageInfo& image, const XcfLayerInfo& layer, kelmora::ByteBuffer& canvas)
        : image_(image), layer_(layer), canvas_(canvas) {}

    void take_row(std::uint32_t column, std::uint32_t row, const unsigned char* pixels,
                  std::uint32_t count) override {
        const std::int64_t y = std::int64_t{layer_.y} + row;
        const std::int64_t x = std::int64_t{layer_.x} + column;
        const std::int64_t first = std::max<std::int64_t>(x, 0);
        const std::int64_t last = std::min<std::int64_t>(x + count, image_.width);
        if (y < 0 || y >= image_.height || first >= last) return;
        const unsigned char* from = pixels + static_cast<std::size_t>(first - x) * rgbaSize;
        unsigned char* to =
            canvas_.data() +
            (static_cast<std::size_t>(y) * image_.width + static_cast<std::size_t>(first)) * rgbaSize;
        for (std::int64_t i = first; i < last; ++i, from += rgbaSize, to += rgbaSize) compose_over(from, to);
    }

private:
    const XcfImageInfo& image_;
    const XcfLayerInfo& layer_;
    kelmora::ByteBuffer& canvas_;
};

// Pixels of all visible layers together, and properties of all. A small file may list one layer, or share its
// tiles, without end.
constexpr std::uint64_t layerPixelLimit = std::uint64_t{1} << 32;
constexpr std::uint64_t layerPropertyLimit = std::uint64_t{1} << 24;

bool lay_layers(ByteSpan file, const XcfImageInfo& image, const std::vector<std::uint64_t>& offsets,
                kelmora::ByteBuffer& canvas) {
    std::uint64_t pixels = 0;
    std::uint64_t properties = 0;
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset) {
        XcfLayerInfo layer;
        if (!xcf_parse_layer(file, image, *offset, layer)) return false;
        properties += layer.properties;
        if (properties > layerPropertyLimit) return false;
        if (!layer.visible || layer.opacity == 0) continue;
        pixels += std::uint64_t{layer.width} * layer.height;
        if (pixels > layerPixelLimit) return false;
        LayerOnCanvas sink(image, layer, canvas);
        if (!xcf_decode_layer_pixels(file, image, layer, sink)) return false;
    }
    return true;
}

}  // namespace

bool load_xcf(ByteSpan file, Image& image) {
    kelmora::ByteReader reader(file);
    XcfImageInfo info;
    std::vector<std::uint64_t> offsets;
    if (!xcf_read_header(file, reader, info) || !xcf_parse_image_properties(reader, info)) return false;
    if (!xcf_take_layer_offsets(file, reader, info, offsets)) return false;
    kelmora::ByteBuffer canvas;
    if (!within_pixel_limit(info.width, info.height)) return false;
    // A canvas may be larger than all that is drawn on it: untouched pages of it cost nothing.
    if (!kelmora::assignZeros(canvas, std::uint64_t{info.width} * info.height * rgbaSize)) return false;
    if (!lay_layers(file, info, offsets, canvas)) return false;
    image.width = static_cast<int>(info.width);
    image.height = static_cast<int>(info.height);
    image.pixels = std::move(canvas);
    return true;
}

}  // namespace vh::png
