#pragma once

#include <cstddef>

#include "codec/xcf_structure.h"

namespace vh::png {

// Decodes a tile's planes, one channel after the other, into interleaved samples. `output` holds
// `pixels` x `channels` bytes.
[[nodiscard]] bool xcf_decode_rle_tile(const unsigned char* data, std::size_t size, std::size_t pixels,
                                       std::size_t channels, unsigned char* output);

// Takes the pixels of a layer tile by tile, in rows of RGBA with the layer's opacity in their alpha.
class XcfPixelSink {
public:
    virtual ~XcfPixelSink() = default;
    // Column and row are the layer's.
    virtual void take_row(std::uint32_t column, std::uint32_t row, const unsigned char* pixels,
                          std::uint32_t count) = 0;
};

// False for a layer whose structure or data is damaged; the sink may have had some of it by then.
[[nodiscard]] bool xcf_decode_layer_pixels(ByteSpan file, const XcfImageInfo& image,
                                           const XcfLayerInfo& layer, XcfPixelSink& sink);

}  // namespace vh::png
