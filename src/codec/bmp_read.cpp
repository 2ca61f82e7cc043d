#include "codec/bmp_read.h"

#include <array>
#include <bit>
#include <limits>
#include <utility>

#include "codec/load_store.h"
#include "codec/pixel_limit.h"
#include "codec/swap_red_blue.h"

namespace vh::png {
namespace {

constexpr std::size_t fileHeaderSize = 14;
constexpr std::uint32_t coreHeader = 12;
constexpr std::uint32_t infoHeader = 40;
constexpr std::uint32_t headerWithMasks = 52;
constexpr std::uint32_t headerWithAlphaMask = 56;
constexpr std::size_t masksStart = 54;

enum Compression : std::uint32_t { Plain = 0, BitFields = 3, AlphaBitFields = 6 };

struct Masks {
    std::uint32_t red = 0;
    std::uint32_t green = 0;
    std::uint32_t blue = 0;
    std::uint32_t alpha = 0;

    bool no_colours() const { return red == 0 && green == 0 && blue == 0; }
    bool operator==(const Masks&) const = default;
};

constexpr Masks masks16{0x7C00, 0x3E0, 0x1F, 0};
constexpr Masks masks32{0xFF0000, 0xFF00, 0xFF, 0xFF000000};

struct BmpHeader {
    std::uint32_t data_offset = 0;
    std::uint32_t header_size = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool top_down = false;
    std::uint32_t planes = 0;
    std::uint32_t bits = 0;
    std::uint32_t compression = Plain;
    std::uint32_t colours_used = 0;
    std::uint64_t palette_start = 0;
    std::size_t palette_step = 4;
    std::uint32_t stride = 0;
    Masks masks;
};

std::uint32_t load_u16(const unsigned char* place) {
    return load_little<std::uint16_t>(place);
}

void read_core_header(const unsigned char* data, BmpHeader& header) {
    header.width = load_u16(data + 18);
    header.height = load_u16(data + 20);
    header.planes = load_u16(data + 22);
    header.bits = load_u16(data + 24);
    header.palette_start = fileHeaderSize + coreHeader;
    header.palette_step = 3;
}

bool read_info_header(ByteSpan file, BmpHeader& header) {
    header.palette_start = fileHeaderSize + std::uint64_t{header.header_size};
    if (header.header_size < infoHeader || header.palette_start > file.size()) return false;
    const unsigned char* data = file.data();
    const auto width = static_cast<std::int32_t>(load_u32(data + 18));
    const std::int64_t height = static_cast<std::int32_t>(load_u32(data + 22));
    if (width < 1) return false;
    header.width = static_cast<std::uint32_t>(width);
    header.height = static_cast<std::uint32_t>(height < 0 ? -height : height);
    header.top_down = height < 0;
    header.planes = load_u16(data + 26);
    header.bits = load_u16(data + 28);
    header.compression = load_u32(data + 30);
    header.colours_used = load_u32(data + 46);
    // The masks stand behind the shortest header.
    if (header.header_size == infoHeader && header.compression == BitFields) header.palette_start += 12;
    if (header.header_size == infoHeader && header.compression == AlphaBitFields) header.palette_start += 16;
    return true;
}

bool read_masks(ByteSpan file, BmpHeader& header) {
    if (header.compression != Plain) {
        const bool has_alpha = header.header_size < headerWithMasks
                                   ? header.compression == AlphaBitFields
                                   : header.header_size >= headerWithAlphaMask;
        if (file.size() < masksStart + (has_alpha ? 16u : 12u)) return false;
        const unsigned char* data = file.data() + masksStart;
        header.masks = {load_u32(data), load_u32(data + 4), load_u32(data + 8), 0};
        if (has_alpha) header.masks.alpha = load_u32(data + 12);
    }
    if (!header.masks.no_colours()) return true;
    if (header.bits == 16) {
        header.masks = {masks16.red, masks16.green, masks16.blue, header.masks.alpha};
    } else if (header.bits == 32) {
        header.masks = masks32;
    }
    return true;
}

bool is_supported(const BmpHeader& header, std::size_t file_size) {
    if (header.data_offset >= file_size || header.planes != 1) return false;
    if (header.width == 0 || header.height == 0) return false;
    if (header.compression != Plain && header.compression != BitFields &&
        header.compression != AlphaBitFields)
        return false;
    switch (header.bits) {
        case 1:
        case 4:
        case 8:
        case 16:
        case 24:
        case 32:
            return true;
        default:
            return false;
    }
}

bool plan_rows(std::size_t file_size, BmpHeader& header) {
    const std::uint64_t stride = (std::uint64_t{header.width} * header.bits + 31) / 8 / 4 * 4;
    if (stride > std::numeric_limits<std::uint32_t>::max()) return false;
    header.stride = static_cast<std::uint32_t>(stride);
    return within_pixel_limit(header.width, header.height) &&
           stride * header.height <= file_size - header.data_offset;
}

bool read_header(ByteSpan file, BmpHeader& header) {
    constexpr std::size_t shortest = fileHeaderSize + coreHeader;
    if (file.size() < shortest || !has_bmp_signature(file)) return false;
    header.data_offset = load_u32(file.data() + 10);
    header.header_size = load_u32(file.data() + 14);
    if (header.header_size == coreHeader)
        read_core_header(file.data(), header);
    else if (!read_info_header(file, header))
        return false;
    return is_supported(header, file.size()) && read_masks(file, header) && plan_rows(file.size(), header);
}

using Pixel = std::array<unsigned char, rgbaSize>;

struct PaletteColours {
    std::array<Pixel, 256> colours{};
    std::uint32_t count = 0;
};

bool read_palette(ByteSpan file, const BmpHeader& header, PaletteColours& palette) {
    const std::uint32_t count = header.colours_used != 0 ? header.colours_used : 1u << header.bits;
    if (header.palette_start > file.size()) return false;
    if (std::uint64_t{count} * header.palette_step > file.size() - header.palette_start) return false;
    palette.count = std::min<std::uint32_t>(count, 256);
    const unsigned char* from = file.data() + header.palette_start;
    for (std::uint32_t i = 0; i < palette.count; ++i, from += header.palette_step)
        palette.colours[i] = {from[2], from[1], from[0], 255};
    return true;
}

// False for an index past the palette.
bool read_indexed_row(const unsigned char* from, const BmpHeader& header, const PaletteColours& palette,
                      unsigned char* to) {
    const unsigned per_byte = 8 / header.bits;
    const unsigned mask = (1u << header.bits) - 1;
    for (std::uint32_t x = 0; x < header.width; ++x, to += rgbaSize) {
        const unsigned shift = (per_byte - 1 - x % per_byte) * header.bits;
        const unsigned index = (unsigned{from[x / per_byte]} >> shift) & mask;
        if (index >= palette.count) return false;
        std::copy(palette.colours[index].begin(), palette.colours[index].end(), to);
    }
    return true;
}

void read_row24(const unsigned char* from, std::uint32_t width, unsigned char* to) {
    for (std::uint32_t x = 0; x < width; ++x, from += 3, to += rgbaSize) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
        to[3] = 255;
    }
}

// `scale_masked_sample` with what depends on the mask alone worked out once.
class Channel {
public:
    explicit Channel(std::uint32_t mask) : mask_(mask) {
        if (mask == 0) return;
        shift_ = static_cast<unsigned>(std::countr_zero(mask));
        const auto bits = static_cast<unsigned>(std::popcount(mask));
        maximum_ = bits > 30 ? std::numeric_limits<std::uint32_t>::max() : (1u << bits) - 1;
    }
    std::uint32_t of(std::uint32_t value) const {
        return (((value & mask_) >> shift_) * 255 + maximum_ / 2) / maximum_;
    }

private:
    std::uint32_t mask_;
    unsigned shift_ = 0;
    std::uint32_t maximum_ = 1;
};

class MaskedRows {
public:
    explicit MaskedRows(const BmpHeader& header)
        : header_(header),
          red_(header.masks.red),
          green_(header.masks.green),
          blue_(header.masks.blue),
          alpha_(header.masks.alpha) {}

    void read(const unsigned char* from, unsigned char* to) const {
        if (header_.bits == 32 && header_.masks == masks32) {
            swap_red_blue(from, header_.width, to);
            return;
        }
        const unsigned step = header_.bits / 8;
        for (std::uint32_t x = 0; x < header_.width; ++x, from += step, to += rgbaSize) {
            const std::uint32_t value = step == 2 ? load_u16(from) : load_u32(from);
            to[0] = static_cast<unsigned char>(red_.of(value));
            to[1] = static_cast<unsigned char>(green_.of(value));
            to[2] = static_cast<unsigned char>(blue_.of(value));
            to[3] = header_.masks.alpha == 0 ? 255 : static_cast<unsigned char>(alpha_.of(value));
        }
    }

private:
    const BmpHeader& header_;
    Channel red_;
    Channel green_;
    Channel blue_;
    Channel alpha_;
};

bool read_rows(ByteSpan file, const BmpHeader& header, kelmora::ByteBuffer& pixels) {
    PaletteColours palette;
    if (header.bits <= 8 && !read_palette(file, header, palette)) return false;
    const MaskedRows masked(header);
    const std::size_t row_size = std::size_t{header.width} * rgbaSize;
    pixels.resize(row_size * header.height);
    for (std::size_t y = 0; y < header.height; ++y) {
        const unsigned char* from = file.data() + header.data_offset + y * header.stride;
        unsigned char* to = pixels.data() + (header.top_down ? y : header.height - 1 - y) * row_size;
        if (header.bits <= 8) {
            if (!read_indexed_row(from, header, palette, to)) return false;
        } else if (header.bits == 24) {
            read_row24(from, header.width, to);
        } else {
            masked.read(from, to);
        }
    }
    return true;
}

// Many programs leave the fourth byte 0 and mean no alpha.
void make_opaque_if_all_clear(kelmora::ByteBuffer& pixels) {
    for (std::size_t i = 3; i < pixels.size(); i += rgbaSize) {
        if (pixels[i] != 0) return;
    }
    for (std::size_t i = 3; i < pixels.size(); i += rgbaSize) pixels[i] = 255;
}

}  // namespace

std::uint32_t scale_masked_sample(std::uint32_t value, std::uint32_t mask) {
    return Channel(mask).of(value);
}

bool has_bmp_signature(ByteSpan file) {
    return file.size() >= 2 && file[0] == 'B' && file[1] == 'M';
}

bool load_bmp(ByteSpan file, Image& image) {
    BmpHeader header;
    kelmora::ByteBuffer pixels;
    if (!read_header(file, header) || !read_rows(file, header, pixels)) return false;
    if (header.bits == 32 && header.masks.alpha != 0) make_opaque_if_all_clear(pixels);
    image.width = static_cast<int>(header.width);
    image.height = static_cast<int>(header.height);
    image.pixels = std::move(pixels);
    return true;
}

}  // namespace vh::png
