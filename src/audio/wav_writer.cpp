#include "audio/wav_writer.h"

#include <cstddef>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

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

void writeId(std::vector<std::uint8_t>& out, std::string_view id) {
    for (const char letter : id) out.push_back(static_cast<std::uint8_t>(letter));
}

void writeHeader(std::vector<std::uint8_t>& out, const DecodedFile& sound, std::uint32_t dataSize) {
    const auto frameSize = static_cast<std::uint16_t>(sound.channels * 2);
    writeId(out, "RIFF");
    detail::writeU32LE(out, dataSize + headerSizeInRiff);
    writeId(out, "WAVE");
    writeId(out, "fmt ");
    detail::writeU32LE(out, formatSize);
    detail::writeU16LE(out, formatPcm);
    detail::writeU16LE(out, sound.channels);
    detail::writeU32LE(out, sound.sampleRate);
    detail::writeU32LE(out, sound.sampleRate * frameSize);
    detail::writeU16LE(out, frameSize);
    detail::writeU16LE(out, bitsPerSample);
    writeId(out, "data");
    detail::writeU32LE(out, dataSize);
}

}  // namespace

bool encode(const DecodedFile& sound, std::vector<std::uint8_t>* out) try {
    if (!out || !isWritable(sound)) return false;
    const auto dataSize = static_cast<std::uint32_t>(sound.samples.size() * 2);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(std::size_t{headerSize} + dataSize);
    writeHeader(bytes, sound, dataSize);
    bytes.resize(bytes.size() + dataSize);
    std::uint8_t* place = bytes.data() + headerSize;
    for (const std::int16_t sample : sound.samples) {
        *place++ = static_cast<std::uint8_t>(sample);
        *place++ = static_cast<std::uint8_t>(sample >> 8);
    }
    *out = std::move(bytes);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool encodeFile(const char* path, const DecodedFile& sound) {
    std::vector<std::uint8_t> bytes;
    return path && encode(sound, &bytes) && kelmora::writeWholeFileBytes(path, bytes);
}

namespace detail {

void writeU16LE(std::vector<std::uint8_t>& out, std::uint16_t value) {
    out.push_back(static_cast<std::uint8_t>(value));
    out.push_back(static_cast<std::uint8_t>(value >> 8));
}

void writeU32LE(std::vector<std::uint8_t>& out, std::uint32_t value) {
    writeU16LE(out, static_cast<std::uint16_t>(value));
    writeU16LE(out, static_cast<std::uint16_t>(value >> 16));
}

}  // namespace detail
}  // namespace vesper::wav
