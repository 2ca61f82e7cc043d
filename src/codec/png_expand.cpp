#include "codec/png_expand.h"

#include <cstring>

#include "codec/load_store.h"

namespace vh::png {
namespace {

void put(unsigned char* out, unsigned char red, unsigned char green, unsigned char blue,
         unsigned char alpha) {
    out[0] = red;
    out[1] = green;
    out[2] = blue;
    out[3] = alpha;
}

template <std::size_t PixelSize, typename Expand>
bool expand_pixels(const unsigned char* row, std::size_t count, unsigned char* out, std::size_t step,
                   Expand expand) {
    for (; count > 0; --count, row += PixelSize, out += step) expand(row, out);
    return true;
}

bool expand_palette(const DecodeTables& tables, const unsigned char* row, std::size_t count,
                    unsigned char* out, std::size_t step) {
    unsigned highest = 0;
    for (std::size_t i = 0; i < count; ++i, out += step) {
        const unsigned index = row[i];
        highest = index > highest ? index : highest;
        std::memcpy(out, tables.palette[index].data(), 4);
    }
    return count == 0 || highest < tables.palette_size;
}

// Reads 4 bytes for each pixel of 3, so the last one is put by its bytes.
bool expand_rgb(const unsigned char* row, std::size_t count, unsigned char* out, std::size_t step) {
    constexpr std::uint32_t opaque = 0xFF000000u;
    for (; count > 1; --count, row += 3, out += step) store_u32(out, load_u32(row) | opaque);
    if (count == 1) put(out, row[0], row[1], row[2], 255);
    return true;
}

bool expand_row_8(const Header& header, const DecodeTables& tables, const unsigned char* row,
                  std::size_t count, unsigned char* out, std::size_t step) {
    switch (header.colour_type) {
        case Grey:
            return expand_pixels<1>(row, count, out, step, [&](const unsigned char* in, unsigned char* to) {
                const bool clear = tables.has_grey_key && in[0] == tables.grey_key;
                put(to, in[0], in[0], in[0], clear ? 0 : 255);
            });
        case Rgb:
            if (!tables.has_rgb_key) return expand_rgb(row, count, out, step);
            return expand_pixels<3>(row, count, out, step, [&](const unsigned char* in, unsigned char* to) {
                const auto& key = tables.rgb_key;
                const bool clear = in[0] == key[0] && in[1] == key[1] && in[2] == key[2];
                put(to, in[0], in[1], in[2], clear ? 0 : 255);
            });
        case Palette:
            return expand_palette(tables, row, count, out, step);
        case GreyAlpha:
            return expand_pixels<2>(row, count, out, step, [](const unsigned char* in, unsigned char* to) {
                put(to, in[0], in[0], in[0], in[1]);
            });
        default:
            return expand_pixels<4>(row, count, out, step, [](const unsigned char* in, unsigned char* to) {
                std::memcpy(to, in, 4);
            });
    }
}

bool expand_row_16(const Header& header, const DecodeTables& tables, const unsigned char* row,
                   std::size_t count, unsigned char* out, std::size_t step) {
    const auto scaled = [](const unsigned char* in, std::size_t sample) {
        return scale_sample(load_u16_big(in + 2 * sample));
    };
    switch (header.colour_type) {
        case Grey:
            return expand_pixels<2>(row, count, out, step, [&](const unsigned char* in, unsigned char* to) {
                const bool clear = tables.has_grey_key && load_u16_big(in) == tables.grey_key;
                const unsigned char grey = scaled(in, 0);
                put(to, grey, grey, grey, clear ? 0 : 255);
            });
        case Rgb:
            return expand_pixels<6>(row, count, out, step, [&](const unsigned char* in, unsigned char* to) {
                const auto& key = tables.rgb_key;
                const bool clear = tables.has_rgb_key && load_u16_big(in) == key[0] &&
                                   load_u16_big(in + 2) == key[1] && load_u16_big(in + 4) == key[2];
                put(to, scaled(in, 0), scaled(in, 1), scaled(in, 2), clear ? 0 : 255);
            });
        case GreyAlpha:
            return expand_pixels<4>(row, count, out, step, [&](const unsigned char* in, unsigned char* to) {
                const unsigned char grey = scaled(in, 0);
                put(to, grey, grey, grey, scaled(in, 1));
            });
        default:
            return expand_pixels<8>(row, count, out, step, [&](const unsigned char* in, unsigned char* to) {
                put(to, scaled(in, 0), scaled(in, 1), scaled(in, 2), scaled(in, 3));
            });
    }
}

void read_key(const ParsedPng& parsed, DecodeTables& tables) {
    const unsigned char* key = parsed.transparency.data();
    if (parsed.header.colour_type == Grey) {
        tables.has_grey_key = true;
        tables.grey_key = static_cast<std::uint16_t>(load_u16_big(key));
    }
    if (parsed.header.colour_type == Rgb) {
        tables.has_rgb_key = true;
        for (std::size_t i = 0; i < 3; ++i)
            tables.rgb_key[i] = static_cast<std::uint16_t>(load_u16_big(key + 2 * i));
    }
}

}  // namespace

bool build_tables(const ParsedPng& parsed, DecodeTables& tables) {
    if (parsed.header.colour_type != Palette) {
        if (!parsed.transparency.empty()) read_key(parsed, tables);
        return true;
    }
    tables.palette_size = parsed.palette.size() / 3;
    // A second, shorter palette may have come behind the transparency.
    if (parsed.palette.size() % 3 != 0 || parsed.transparency.size() > tables.palette_size) return false;
    for (std::size_t i = 0; i < tables.palette_size; ++i) {
        const unsigned char* entry = parsed.palette.data() + 3 * i;
        const unsigned char alpha = i < parsed.transparency.size() ? parsed.transparency[i] : 255;
        tables.palette[i] = {entry[0], entry[1], entry[2], alpha};
    }
    return true;
}

bool expand_row(const Header& header, const DecodeTables& tables, const unsigned char* row, std::size_t count,
                unsigned char* out, std::size_t step) {
    if (header.bit_depth == 16) return expand_row_16(header, tables, row, count, out, step);
    return expand_row_8(header, tables, row, count, out, step);
}

}  // namespace vh::png
