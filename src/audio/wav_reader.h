#pragma once

#include <cstdint>
#include <vector>

namespace vesper::wav {

// A whole sound. Samples are interleaved; a frame is one sample of each channel.
struct DecodedFile {
    std::vector<std::int16_t> samples;
    std::uint32_t sampleRate = 0;  // frames per second
    std::uint16_t channels = 0;
};

struct DecodeOptions {
    std::uint16_t channels = 0;  // 0 keeps the file's own count
};

// Reads RIFF WAVE files of integer PCM (8, 16, 24 or 32 bits) and float PCM (32 or 64 bits), plain or
// extensible. False for anything else and for a truncated file; `out` is only written on success.
[[nodiscard]] bool decode(const void* bytes, unsigned length, DecodedFile* out, const DecodeOptions& options);

namespace detail {

// False for a null argument, a file that cannot be read and an empty one.
bool readFileBytes(const char* path, std::vector<std::uint8_t>* out);

// One little-endian sample in [-1, 1]. `format` is 1 for integers, 3 for floats; 0.0 for a pair of format and
// bits that is not read, and for a float that is not a number.
double readSampleAsFloat(const std::uint8_t* p, std::uint16_t format, std::uint16_t bits);

// The 16-bit sample of a value. Negative values scale by 32768 and others by 32767, so that both ends of the
// range are reached; halves round away from zero.
std::int16_t sampleFromFloat(double value);

}  // namespace detail
}  // namespace vesper::wav
