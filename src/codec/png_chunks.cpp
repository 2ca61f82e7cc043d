#include "codec/png_chunks.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "codec/crc32.h"
#include "codec/load_store.h"

namespace vh::png {
namespace {

constexpr std::array<unsigned char, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t emptyChunkSize = 12;  // length, type and CRC
constexpr std::size_t smallestFile = signature.size() + emptyChunkSize;

struct Chunk {
    std::uint32_t type = 0;
    ByteSpan data;
};

constexpr std::uint32_t chunk_type(const char (&name)[5]) {
    std::uint32_t type = 0;
    for (int i = 0; i < 4; ++i) type = type << 8 | static_cast<unsigned char>(name[i]);
    return type;
}

constexpr bool is_ancillary(std::uint32_t type) {
    return (type & 0x20000000u) != 0;
}

// Takes the chunk that `rest` starts with off it.
bool next_chunk(ByteSpan& rest, Chunk& chunk) {
    const std::uint32_t length = load_u32_big(rest.data());
    if (length > rest.size() - emptyChunkSize) return false;
    chunk.type = load_u32_big(rest.data() + 4);
    chunk.data = rest.subspan(8, length);
    if (crc32(rest.subspan(4, 4 + std::size_t{length})) != load_u32_big(chunk.data.data() + length))
        return false;
    rest = rest.subspan(emptyChunkSize + length);
    return true;
}

bool depth_is_read(std::uint8_t colour_type, std::uint8_t bit_depth) {
    switch (colour_type) {
        case Grey:
        case Rgb:
        case GreyAlpha:
        case Rgba:
            return bit_depth == 8 || bit_depth == 16;
        case Palette:
            return bit_depth == 8;
        default:
            return false;
    }
}

bool read_ihdr(ByteSpan data, ParsedPng& parsed) {
    if (data.size() != 13) return false;
    Header& header = parsed.header;
    header = {load_u32_big(data.data()),
              load_u32_big(data.data() + 4),
              data[8],
              data[9],
              data[10],
              data[11],
              data[12]};
    parsed.ihdr_seen = true;
    return header.width != 0 && header.height != 0 && depth_is_read(header.colour_type, header.bit_depth) &&
           header.compression == 0 && header.filter == 0 && header.interlace <= 1;
}

bool read_actl(ByteSpan data, ParsedPng& parsed) {
    if (data.size() != 8 || parsed.idat_seen || parsed.actl_seen) return false;
    parsed.actl_seen = true;
    parsed.num_frames = load_u32_big(data.data());
    return true;
}

bool lies_within(std::uint32_t offset, std::uint32_t size, std::uint32_t whole) {
    return size != 0 && size <= whole && offset <= whole - size;
}

bool read_fctl(ByteSpan data, ParsedPng& parsed) {
    if (data.size() != 26 || !parsed.actl_seen) return false;
    ParsedPng::Frame frame;
    frame.width = load_u32_big(data.data() + 4);
    frame.height = load_u32_big(data.data() + 8);
    frame.x_offset = load_u32_big(data.data() + 12);
    frame.y_offset = load_u32_big(data.data() + 16);
    frame.dispose_op = data[24];
    frame.blend_op = data[25];
    frame.uses_idat = parsed.frames.empty() && !parsed.idat_seen;
    if (!lies_within(frame.x_offset, frame.width, parsed.header.width) ||
        !lies_within(frame.y_offset, frame.height, parsed.header.height) || frame.dispose_op > 2 ||
        frame.blend_op > 1)
        return false;
    parsed.frames.push_back(std::move(frame));
    return true;
}

bool read_plte(ByteSpan data, ParsedPng& parsed) {
    if (data.empty() || data.size() > 768 || data.size() % 3 != 0) return false;
    parsed.palette = data;
    return true;
}

bool read_trns(ByteSpan data, ParsedPng& parsed) {
    parsed.transparency = data;
    switch (parsed.header.colour_type) {
        case Grey:
            return data.size() == 2;
        case Rgb:
            return data.size() == 6;
        case Palette:
            return data.size() <= parsed.palette.size() / 3;
        default:
            return false;
    }
}

bool read_idat(ByteSpan data, ParsedPng& parsed) {
    parsed.idat_seen = true;
    if (data.empty()) return true;
    parsed.idat.push_back(data);
    parsed.idat_bytes += data.size();
    if (!parsed.frames.empty() && parsed.frames.back().uses_idat) parsed.frames.back().spans.push_back(data);
    return true;
}

bool read_fdat(ByteSpan data, ParsedPng& parsed) {
    constexpr std::size_t sequenceNumberSize = 4;
    if (!parsed.actl_seen || data.size() <= sequenceNumberSize || parsed.frames.empty()) return false;
    parsed.frames.back().spans.push_back(data.subspan(sequenceNumberSize));
    return true;
}

bool read_iend(ByteSpan data, ParsedPng& parsed) {
    parsed.iend_seen = true;
    return data.empty();
}

bool read_chunk(const Chunk& chunk, ParsedPng& parsed) {
    if (!parsed.ihdr_seen) return chunk.type == chunk_type("IHDR") && read_ihdr(chunk.data, parsed);
    switch (chunk.type) {
        case chunk_type("acTL"):
            return read_actl(chunk.data, parsed);
        case chunk_type("fcTL"):
            return read_fctl(chunk.data, parsed);
        case chunk_type("PLTE"):
            return read_plte(chunk.data, parsed);
        case chunk_type("tRNS"):
            return read_trns(chunk.data, parsed);
        case chunk_type("IDAT"):
            return read_idat(chunk.data, parsed);
        case chunk_type("fdAT"):
            return read_fdat(chunk.data, parsed);
        case chunk_type("IEND"):
            return read_iend(chunk.data, parsed);
        default:
            return is_ancillary(chunk.type);
    }
}

bool animation_is_whole(const ParsedPng& parsed) {
    if (!parsed.actl_seen) return true;
    if (parsed.num_frames == 0 || parsed.frames.empty() || parsed.frames.size() > parsed.num_frames)
        return false;
    return std::none_of(parsed.frames.begin(), parsed.frames.end(),
                        [](const ParsedPng::Frame& frame) { return frame.spans.empty(); });
}

bool is_whole(const ParsedPng& parsed) {
    const bool lacks_palette = parsed.header.colour_type == Palette && parsed.palette.empty();
    return parsed.ihdr_seen && parsed.iend_seen && parsed.idat_bytes != 0 && !lacks_palette &&
           animation_is_whole(parsed);
}

}  // namespace

bool has_png_signature(ByteSpan file) {
    return file.size() >= signature.size() && std::equal(signature.begin(), signature.end(), file.begin());
}

bool parse_png(ByteSpan file, ParsedPng& parsed) {
    if (file.size() < smallestFile || !has_png_signature(file)) return false;
    ByteSpan rest = file.subspan(signature.size());
    while (rest.size() >= emptyChunkSize && !parsed.iend_seen) {
        Chunk chunk;
        if (!next_chunk(rest, chunk) || !read_chunk(chunk, parsed)) return false;
    }
    return is_whole(parsed);
}

}  // namespace vh::png
