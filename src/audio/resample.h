#pragma once

#include <cstdint>

#include "audio/wav_reader.h"

// Sounds read at another pace, between samples by a straight line. Nothing is read past the last frame.
namespace vesper::audio {

// `frames` frames of the source, each `step` of its frames from the one before; silence behind its end.
wav::DecodedFile resample(const wav::DecodedFile& source, std::uint32_t frames, double step);

// Adds the stereo source to the stereo target from a frame on, as far as both reach. The two may not be the
// same object.
void mixInto(wav::DecodedFile& target, const wav::DecodedFile& source, std::uint32_t offsetFrames);

}  // namespace vesper::audio
