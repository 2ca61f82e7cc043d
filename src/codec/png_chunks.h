#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "codec/inflate.h"
#include "codec/png_header.h"

namespace vh::png {

// A PNG file taken apart. Spans point into the file's bytes, which must outlive it.
struct ParsedPng {
    struct Frame {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        std::uint32_t x_offset = 0;
        std::uint32_t y_offset = 0;
        std::uint8_t dispose_op = 0;
        std::uint8_t blend_op = 0;
        bool uses_idat = false;  // announced before the first IDAT, whose data it takes as its own
        std::vector<ByteSpan> spans;
    };

    Header header;
    bool ihdr_seen = false;
    bool idat_seen = false;
    bool iend_seen = false;
    bool actl_seen = false;
    std::uint64_t idat_bytes = 0;
    std::uint32_t num_frames = 0;  // as acTL has it
    ByteSpan palette;
    ByteSpan transparency;
    std::vector<ByteSpan> idat;
    std::vector<Frame> frames;
};

bool has_png_signature(ByteSpan file);

// Walks the chunks up to IEND. False for a file that breaks a rule anywhere, in chunks that are skipped as
// well.
bool parse_png(ByteSpan file, ParsedPng& parsed);

}  // namespace vh::png
