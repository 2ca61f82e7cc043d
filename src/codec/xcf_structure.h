#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/byte_reader.h"
#include "codec/inflate.h"

namespace vh::png {

// Where things stand in a layered working file. Offsets count from the file's start and are tested against
// its size as they are read; each 0 where there is none.

enum class XcfBase : std::uint8_t { Rgb = 0, Grey = 1, Indexed = 2 };

enum class XcfCompression : std::uint8_t { None = 0, RunLength = 1, Zlib = 2 };

struct XcfImageInfo {
    std::uint32_t version = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    XcfBase base = XcfBase::Rgb;
    std::uint8_t compression = 0;  // an XcfCompression, or a kind that is not read
    std::array<unsigned char, 768> palette{};
    std::uint32_t palette_size = 0;  // colours
};

struct XcfLayerInfo {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t type = 0;
    std::uint8_t opacity = 255;
    bool visible = true;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::uint64_t hierarchy = 0;
    std::uint32_t properties = 0;  // how many were read
};

bool has_xcf_signature(ByteSpan file);

// Reads the file's head and leaves `reader` in front of the image's properties.
[[nodiscard]] bool xcf_read_header(ByteSpan file, kelmora::ByteReader& reader, XcfImageInfo& image);

// Reads the image's properties up to and with the one that ends them.
[[nodiscard]] bool xcf_parse_image_properties(kelmora::ByteReader& reader, XcfImageInfo& image);

// Reads an offset of the width that the file's version has.
[[nodiscard]] bool xcf_take_pointer(kelmora::ByteReader& reader, const XcfImageInfo& image,
                                    std::uint64_t& pointer);

// The layers' offsets from the top layer down, up to the 0 that ends them.
[[nodiscard]] bool xcf_take_layer_offsets(ByteSpan file, kelmora::ByteReader& reader,
                                          const XcfImageInfo& image, std::vector<std::uint64_t>& offsets);

[[nodiscard]] bool xcf_parse_layer(ByteSpan file, const XcfImageInfo& image, std::uint64_t offset,
                                   XcfLayerInfo& layer);

}  // namespace vh::png
