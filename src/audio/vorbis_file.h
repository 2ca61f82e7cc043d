#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "audio/sample_source.h"

namespace vesper::ogg {

// An Ogg Vorbis file in memory as it is on the disk: it is unpacked while it plays.
struct VorbisFile {
    std::vector<std::uint8_t> bytes;
    std::uint32_t sampleRate = 0;
    std::uint64_t frames = 0;
    int decoderMemory = 0;  // bytes
};

// Null, with the reason in `failure`, for anything but a whole, undamaged file with one stream.
std::shared_ptr<const VorbisFile> readVorbis(std::vector<std::uint8_t> bytes, std::string& failure);

// Stereo, whatever the file has: one channel is heard on both sides, more than two are mixed. What cannot be
// unpacked is silence. Null when there is no memory for a decoder.
std::unique_ptr<mixer::SampleSource> openVorbis(std::shared_ptr<const VorbisFile> file);

}  // namespace vesper::ogg
