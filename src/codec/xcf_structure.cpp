#include "codec/xcf_structure.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <string_view>

#include "codec/load_store.h"

namespace vh::png {
namespace {

using kelmora::ByteReader;

constexpr std::string_view signature = "gimp xcf ";
constexpr std::size_t versionSize = 4;
constexpr std::size_t shortestFile = 30;
constexpr std::uint32_t firstWithPrecision = 4;
constexpr std::uint32_t lastWithShortOffsets = 10;

enum PropertyType : std::uint32_t {
    EndOfProperties = 0,
    ColourMap = 1,
    Opacity = 6,
    Visible = 8,
    Offsets = 15,
    CompressionKind = 17,
    FloatOpacity = 33,
};

struct Property {
    std::uint32_t type = EndOfProperties;
    ByteSpan payload;
};

bool take_property(ByteReader& reader, Property& property) {
    std::uint32_t length = 0;
    if (!reader.readU32Big(property.type) || !reader.readU32Big(length)) return false;
    if (property.type == EndOfProperties) return length == 0;
    return reader.readBytes(length, property.payload);
}

// Three decimal digits behind a 'v', or "file" for the first version of all.
bool parse_version(std::string_view text, std::uint32_t& version) {
    version = 0;
    if (text == "file") return true;
    if (text[0] != 'v') return false;
    for (const char digit : text.substr(1)) {
        if (digit < '0' || digit > '9') return false;
        version = version * 10 + static_cast<std::uint32_t>(digit - '0');
    }
    return true;
}

bool take_precision(ByteReader& reader) {
    std::uint32_t precision = 0;
    if (!reader.readU32Big(precision)) return false;
    return precision == 0 || precision == 100 || precision == 150;
}

void take_palette(ByteSpan payload, XcfImageInfo& image) {
    if (payload.size() < 4) return;
    const std::uint32_t count = load_u32_big(payload.data());
    if (count > 256 || 3 * count + 4 > payload.size()) return;
    image.palette_size = count;
    std::copy_n(payload.begin() + 4, 3 * count, image.palette.begin());
}

std::uint8_t opacity_of(float value) {
    if (!(value > 0.0f)) return 0;
    if (!(value < 1.0f)) return 255;
    return static_cast<std::uint8_t>(std::floor(255.0 * static_cast<double>(value) + 0.5));
}

void apply_layer_property(const Property& property, XcfLayerInfo& layer) {
    const ByteSpan payload = property.payload;
    if (payload.size() < 4) return;
    const std::uint32_t value = load_u32_big(payload.data());
    switch (property.type) {
        case Opacity:
            layer.opacity = static_cast<std::uint8_t>(std::min<std::uint32_t>(value, 255));
            break;
        case Visible:
            layer.visible = value != 0;
            break;
        case Offsets:
            if (payload.size() < 8) break;
            layer.x = static_cast<std::int32_t>(value);
            layer.y = static_cast<std::int32_t>(load_u32_big(payload.data() + 4));
            break;
        case FloatOpacity:
            layer.opacity = opacity_of(std::bit_cast<float>(value));
            break;
        default:
            break;
    }
}

}  // namespace

bool has_xcf_signature(ByteSpan file) {
    return file.size() >= signature.size() + versionSize + 1 &&
           std::memcmp(file.data(), signature.data(), signature.size()) == 0;
}

bool xcf_read_header(ByteSpan file, ByteReader& reader, XcfImageInfo& image) {
    if (file.size() < shortestFile || !has_xcf_signature(file)) return false;
    std::string_view version;
    std::uint8_t terminator = 1;
    std::uint32_t base = 0;
    const bool taken = reader.seek(signature.size()) && reader.readText(versionSize, version) &&
                       reader.readU8(terminator) && reader.readU32Big(image.width) &&
                       reader.readU32Big(image.height) && reader.readU32Big(base);
    if (!taken || terminator != 0 || !parse_version(version, image.version)) return false;
    if (image.width == 0 || image.height == 0 || base > 2) return false;
    image.base = static_cast<XcfBase>(base);
    return image.version < firstWithPrecision || take_precision(reader);
}

bool xcf_parse_image_properties(ByteReader& reader, XcfImageInfo& image) {
    for (;;) {
        Property property;
        if (!take_property(reader, property)) return false;
        if (property.type == EndOfProperties) return true;
        if (property.type == ColourMap) take_palette(property.payload, image);
        if (property.type == CompressionKind && !property.payload.empty())
            image.compression = property.payload[0];
    }
}

bool xcf_take_pointer(ByteReader& reader, const XcfImageInfo& image, std::uint64_t& pointer) {
    std::uint32_t high = 0;
    std::uint32_t low = 0;
    if (image.version > lastWithShortOffsets && !reader.readU32Big(high)) return false;
    if (!reader.readU32Big(low)) return false;
    pointer = std::uint64_t{high} << 32 | low;
    return true;
}

bool xcf_take_layer_offsets(ByteSpan file, ByteReader& reader, const XcfImageInfo& image,
                            std::vector<std::uint64_t>& offsets) {
    for (;;) {
        std::uint64_t offset = 0;
        if (!xcf_take_pointer(reader, image, offset) || offset >= file.size()) return false;
        if (offset == 0) return !offsets.empty();
        offsets.push_back(offset);
    }
}

bool xcf_parse_layer(ByteSpan file, const XcfImageInfo& image, std::uint64_t offset, XcfLayerInfo& layer) {
    ByteReader reader(file.subspan(static_cast<std::size_t>(offset)));
    std::uint32_t name_length = 0;
    const bool taken = reader.readU32Big(layer.width) && reader.readU32Big(layer.height) &&
                       reader.readU32Big(layer.type) && reader.readU32Big(name_length) &&
                       reader.skip(name_length);
    if (!taken || layer.width == 0 || layer.height == 0) return false;
    for (;;) {
        Property property;
        if (!take_property(reader, property)) return false;
        if (property.type == EndOfProperties) break;
        apply_layer_property(property, layer);
        ++layer.properties;
    }
    std::uint64_t mask = 0;
    return xcf_take_pointer(reader, image, layer.hierarchy) && xcf_take_pointer(reader, image, mask) &&
           layer.hierarchy != 0;
}

}  // namespace vh::png
