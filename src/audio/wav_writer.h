#pragma once

#include <cstdint>
#include <vector>

#include "audio/wav_reader.h"

namespace vesper::wav {

// Writes a RIFF WAVE file of 16-bit PCM. False, with `out` as it was, for a null `out`, a rate or channel
// count of 0, a last frame that is not whole, and a sound whose sizes do not fit the header.
[[nodiscard]] bool encode(const DecodedFile& sound, std::vector<std::uint8_t>* out);

// Replaces the file. False for a null path, a sound that cannot be encoded, and a file that cannot be
// written.
[[nodiscard]] bool encodeFile(const char* path, const DecodedFile& sound);

}  // namespace vesper::wav
