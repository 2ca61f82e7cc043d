#include "audio/wav_writer.h"

#include <cstddef>
#include <limits>
#include <new>

#include "base/byte_writer.h"
#include "base/whole_file.h"

namespace vesper::wav {
namespace {

constexpr std::uint32_t headerSize = 44;
// The RIFF size counts everything behind itself.
constexpr std::uint32_t headerSizeInRiff = headerSize - 8;
constexpr std::uint32_t formatSize = 16;
constexpr std::uint16_t formatPcm = 1;
constexpr std::uint16_t bitsPerSample = 16;

template <typename T>
bool fits(std::uint64_t value) {
    return value <= std::numeric_limits<T>::max();
}

bool isWritable(const DecodedFile& sound) {
    if (sound.sampleRate == 0 || sound.channels == 0 || sound.samples.size() % sound.channels != 0)
        return false;
    const std::uint64_t frameSize = std::uint64_t{sound.channels} * 2;
    const std::uint64_t dataSize = std::uint64_t{sound.samples.size()} * 2;
    return fits<std::uint16_t>(frameSize) && fits<std::uint32_t>(sound.sampleRate * frameSize) &&
           fits<std::uint32_t>(dataSize + headerSizeInRiff);
}

void writeHeader(kelmora::ByteWriter& out, const DecodedFile& sound, std::uint32_t dataSize) {
    const auto frameSize = static_cast<std::uint16_t>(sound.channels * 2);
    out.text("RIFF");
    out.u32(dataSize + headerSizeInRiff);
    out.text("WAVEfmt ");
    out.u32(formatSize);
    out.u16(formatPcm);
    out.u16(sound.channels);
    out.u32(sound.sampleRate);
    out.u32(sound.sampleRate * frameSize);
    out.u16(frameSize);
    out.u16(bitsPerSample);
    out.text("data");
    out.u32(dataSize);
}

}  // namespace

bool encode(const DecodedFile& sound, std::vector<std::uint8_t>* out) try {
    if (!out || !isWritable(sound)) return false;
    const auto dataSize = static_cast<std::uint32_t>(sound.samples.size() * 2);
    kelmora::ByteWriter bytes;
    bytes.reserve(std::size_t{headerSize} + dataSize);
    writeHeader(bytes, sound, dataSize);
    std::uint8_t* place = bytes.room(dataSize).data();
    for (const std::int16_t sample : sound.samples) {
        *place++ = static_cast<std::uint8_t>(sample);
        *place++ = static_cast<std::uint8_t>(sample >> 8);
    }
    *out = bytes.take();
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool encodeFile(const char* path, const DecodedFile& sound) {
    std::vector<std::uint8_t> bytes;
    return path && encode(sound, &bytes) && kelmora::writeWholeFileBytes(path, bytes);
}

}  // namespace vesper::wav
