#include "codec/xcf_pixels.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "codec/pixel_limit.h"

namespace vh::png {
namespace {

using kelmora::ByteReader;

constexpr std::uint32_t tileSide = 64;
constexpr std::size_t largestTile = std::size_t{tileSide} * tileSide;

// The kinds of layer in the order of their numbers.
struct LayerKind {
    std::uint32_t channels;
    XcfBase base;
    bool has_alpha;
};
constexpr LayerKind layerKinds[] = {
    {3, XcfBase::Rgb, false}, {4, XcfBase::Rgb, true},      {1, XcfBase::Grey, false},
    {2, XcfBase::Grey, true}, {1, XcfBase::Indexed, false}, {2, XcfBase::Indexed, true},
};

std::uint32_t tiles_along(std::uint32_t size) {
    return size / tileSide + (size % tileSide != 0 ? 1 : 0);
}

bool seek_to(ByteReader& reader, ByteSpan file, std::uint64_t offset) {
    return offset < file.size() && reader.seek(static_cast<std::size_t>(offset));
}

bool takes_size_of(ByteReader& reader, const XcfLayerInfo& layer) {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    return reader.readU32Big(width) && reader.readU32Big(height) && width == layer.width &&
           height == layer.height;
}

// The offsets of all tiles, row by row.
bool take_tile_offsets(ByteSpan file, const XcfImageInfo& image, const XcfLayerInfo& layer,
                       std::uint32_t channels, std::vector<std::uint64_t>& offsets) {
    ByteReader reader(file);
    std::uint32_t stored_channels = 0;
    std::uint64_t level = 0;
    if (!seek_to(reader, file, layer.hierarchy) || !takes_size_of(reader, layer)) return false;
    if (!reader.readU32Big(stored_channels) || stored_channels != channels) return false;
    if (!xcf_take_pointer(reader, image, level) || level == 0) return false;
    if (!seek_to(reader, file, level) || !takes_size_of(reader, layer)) return false;
    const std::uint64_t count = std::uint64_t{tiles_along(layer.width)} * tiles_along(layer.height);
    if (count > reader.remaining() / sizeof(std::uint32_t)) return false;
    offsets.resize(static_cast<std::size_t>(count));
    for (std::uint64_t& offset : offsets) {
        if (!xcf_take_pointer(reader, image, offset) || offset == 0 || offset >= file.size()) return false;
    }
    std::uint64_t terminator = 1;
    return xcf_take_pointer(reader, image, terminator) && terminator == 0;
}

class LayerDecoder {
public:
    LayerDecoder(ByteSpan file, const XcfImageInfo& image, const XcfLayerInfo& layer, XcfPixelSink& sink)
        : file_(file), image_(image), layer_(layer), kind_(layerKinds[layer.type]), sink_(sink) {}

    bool decode() {
        if (!take_tile_offsets(file_, image_, layer_, kind_.channels, offsets_)) return false;
        samples_.resize(largestTile * kind_.channels);
        const std::uint32_t columns = tiles_along(layer_.width);
        for (std::size_t i = 0; i < offsets_.size(); ++i) {
            const auto column = static_cast<std::uint32_t>(i % columns) * tileSide;
            const auto row = static_cast<std::uint32_t>(i / columns) * tileSide;
            if (!decode_tile(i, column, row)) return false;
        }
        return true;
    }

private:
    bool decode_tile(std::size_t index, std::uint32_t column, std::uint32_t row) {
        const std::uint32_t width = std::min(tileSide, layer_.width - column);
        const std::uint32_t height = std::min(tileSide, layer_.height - row);
        if (!decode_samples(index, std::size_t{width} * height)) return false;
        const unsigned char* from = samples_.data();
        for (std::uint32_t y = 0; y < height; ++y, from += std::size_t{width} * kind_.channels) {
            expand_row(from, width);
            sink_.take_row(column, row + y, row_.data(), width);
        }
        return true;
    }
    bool decode_samples(std::size_t index, std::size_t pixels) {
        const auto start = static_cast<std::size_t>(offsets_[index]);
        const std::uint64_t next = index + 1 < offsets_.size() ? offsets_[index + 1] : 0;
        const std::size_t end = next > start ? static_cast<std::size_t>(next) : file_.size();
        const ByteSpan data = file_.subspan(start, end - start);
        const std::size_t size = pixels * kind_.channels;
        switch (XcfCompression{image_.compression}) {
            case XcfCompression::None:
                if (size > file_.size() - start) return false;
                std::memcpy(samples_.data(), file_.data() + start, size);
                return true;
            case XcfCompression::RunLength:
                return xcf_decode_rle_tile(data.data(), data.size(), pixels, kind_.channels, samples_.data());
            case XcfCompression::Zlib:
                return inflater_.inflate_front(data, static_cast<std::uint32_t>(size), samples_) &&
                       samples_.size() == size;
        }
        return false;
    }
    void expand_row(const unsigned char* from, std::uint32_t width) {
        unsigned char* to = row_.data();
        for (std::uint32_t x = 0; x < width; ++x, from += kind_.channels, to += rgbaSize) {
            expand_colour(from, to);
            const unsigned alpha = kind_.has_alpha ? from[kind_.channels - 1] : 255u;
            to[3] = static_cast<unsigned char>((layer_.opacity * alpha + 127) / 255);
        }
    }
    void expand_colour(const unsigned char* from, unsigned char* to) const {
        static constexpr unsigned char black[3] = {};
        const unsigned char* colour = from;
        if (kind_.base == XcfBase::Indexed)
            colour = from[0] < image_.palette_size ? image_.palette.data() + 3u * from[0] : black;
        const std::size_t step = kind_.base == XcfBase::Grey ? 0 : 1;
        for (std::size_t i = 0; i < 3; ++i) to[i] = colour[i * step];
    }

    ByteSpan file_;
    const XcfImageInfo& image_;
    const XcfLayerInfo& layer_;
    LayerKind kind_;
    XcfPixelSink& sink_;
    std::vector<std::uint64_t> offsets_;
    Inflater inflater_;
    kelmora::ByteBuffer samples_;
    std::array<unsigned char, tileSide * rgbaSize> row_{};
};

// One run of a plane: how many bytes, and whether each is stored or one stands for all.
struct Run {
    std::size_t count = 0;
    bool literal = false;
};

bool take_run(ByteReader& reader, Run& run) {
    std::uint8_t code = 0;
    std::uint16_t long_count = 0;
    if (!reader.readU8(code)) return false;
    run.literal = code >= 128;
    if (code == 127 || code == 128) {
        if (!reader.readU16Big(long_count) || long_count == 0) return false;
        run.count = long_count;
    } else {
        run.count = run.literal ? 256u - code : code + 1u;
    }
    return true;
}

bool decode_plane(ByteReader& reader, std::size_t pixels, std::size_t channels, unsigned char* to) {
    while (pixels > 0) {
        Run run;
        ByteSpan bytes;
        if (!take_run(reader, run) || run.count > pixels) return false;
        if (!reader.readBytes(run.literal ? run.count : 1, bytes)) return false;
        for (std::size_t i = 0; i < run.count; ++i, to += channels) *to = bytes[run.literal ? i : 0];
        pixels -= run.count;
    }
    return true;
}

}  // namespace

bool xcf_decode_rle_tile(const unsigned char* data, std::size_t size, std::size_t pixels,
                         std::size_t channels, unsigned char* output) {
    ByteReader reader({data, size});
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (!decode_plane(reader, pixels, channels, output + channel)) return false;
    }
    return true;
}

bool xcf_decode_layer_pixels(ByteSpan file, const XcfImageInfo& image, const XcfLayerInfo& layer,
                             XcfPixelSink& sink) {
    if (layer.type >= std::size(layerKinds) || !within_pixel_limit(layer.width, layer.height)) return false;
    return LayerDecoder(file, image, layer, sink).decode();
}

}  // namespace vh::png
