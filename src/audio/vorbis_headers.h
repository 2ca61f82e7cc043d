#pragma once

#include <optional>
#include <string>

#include "audio/ogg_pages.h"

namespace vesper::ogg {

struct VorbisFacts {
    std::uint32_t sampleRate = 0;
    std::uint16_t channels = 0;
    std::uint32_t longestBlock = 0;  // frames; a packet gives at most half of it
};

// Reads what stands before the sound of a Vorbis stream, as far as a decoder has to be able to trust it: tags
// that fit, and tables of a size that the decoder can hold. Nothing, with the reason in `failure`, otherwise.
std::optional<VorbisFacts> readHeaders(const Stream& stream, std::string& failure);

}  // namespace vesper::ogg
