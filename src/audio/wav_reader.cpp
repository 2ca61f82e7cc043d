#include "audio/wav_reader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <new>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "base/byte_reader.h"
#include "base/whole_file.h"

namespace vesper::wav {
namespace {

using kelmora::ByteReader;

constexpr std::uint16_t formatInteger = 1;
constexpr std::uint16_t formatFloat = 3;
constexpr std::uint16_t formatExtensible = 0xFFFE;
constexpr std::uint32_t plainFormatSize = 16;
constexpr std::uint32_t extensibleFormatSize = 40;
constexpr std::uint16_t extensionSize = 22;

struct Format {
    std::uint16_t format = 0;
    std::uint16_t channels = 0;
    std::uint32_t sampleRate = 0;
    std::uint16_t bits = 0;
};

struct Contents {
    std::optional<Format> format;
    std::optional<std::span<const unsigned char>> data;
};

template <typename T>
T loadLittle(const std::uint8_t* p) {
    T value = 0;
    for (unsigned i = 0; i < sizeof(T); ++i) value = static_cast<T>(value | T{p[i]} << (8 * i));
    return value;
}

std::int32_t loadSigned24(const std::uint8_t* p) {
    const std::uint32_t high =
        std::uint32_t{p[0]} << 8 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 24;
    return static_cast<std::int32_t>(high) >> 8;
}

double heldToRange(double value) {
    return std::isnan(value) ? 0.0 : std::clamp(value, -1.0, 1.0);
}

// The encodings: how many bytes a sample has, its value, and the 16-bit sample it becomes.
template <std::size_t byteCount, double (*read)(const std::uint8_t*)>
struct Encoding {
    static constexpr std::size_t size = byteCount;
    static double value(const std::uint8_t* p) { return read(p); }
    static std::int16_t sample(const std::uint8_t* p) { return detail::sampleFromFloat(read(p)); }
};

double readInteger8(const std::uint8_t* p) {
    return (int{*p} - 128) * 0.0078125;
}
double readInteger16(const std::uint8_t* p) {
    return static_cast<std::int16_t>(loadLittle<std::uint16_t>(p)) * 3.0517578125e-05;
}
double readInteger24(const std::uint8_t* p) {
    return loadSigned24(p) * 1.1920928955078125e-07;
}
double readInteger32(const std::uint8_t* p) {
    return static_cast<std::int32_t>(loadLittle<std::uint32_t>(p)) * 4.656612873077393e-10;
}
double readFloat32(const std::uint8_t* p) {
    return heldToRange(double{std::bit_cast<float>(loadLittle<std::uint32_t>(p))});
}
double readFloat64(const std::uint8_t* p) {
    return heldToRange(std::bit_cast<double>(loadLittle<std::uint64_t>(p)));
}

using Integer8 = Encoding<1, readInteger8>;
using Integer24 = Encoding<3, readInteger24>;
using Integer32 = Encoding<4, readInteger32>;
using Float32 = Encoding<4, readFloat32>;
using Float64 = Encoding<8, readFloat64>;

struct Integer16 : Encoding<2, readInteger16> {
    // Dividing by 32768 and multiplying by 32767 takes 1 off the upper half of the positive range and
    // nothing off the rest.
    static std::int16_t sample(const std::uint8_t* p) {
        const int value = static_cast<std::int16_t>(loadLittle<std::uint16_t>(p));
        return static_cast<std::int16_t>(value - (value > 16384 ? 1 : 0));
    }
};

// Calls `use` with the encoding of a format. False when there is none.
template <typename Use>
bool withEncoding(std::uint16_t format, std::uint16_t bits, Use use) {
    if (format == formatInteger && bits == 8) return use(Integer8()), true;
    if (format == formatInteger && bits == 16) return use(Integer16()), true;
    if (format == formatInteger && bits == 24) return use(Integer24()), true;
    if (format == formatInteger && bits == 32) return use(Integer32()), true;
    if (format == formatFloat && bits == 32) return use(Float32()), true;
    if (format == formatFloat && bits == 64) return use(Float64()), true;
    return false;
}

bool readFormat(std::span<const unsigned char> chunk, std::optional<Format>& out) {
    ByteReader reader(chunk);
    Format format;
    std::uint16_t blockAlign = 0;
    std::uint32_t byteRate = 0;
    const bool read = reader.readU16(format.format) && reader.readU16(format.channels) &&
                      reader.readU32(format.sampleRate) && reader.readU32(byteRate) &&
                      reader.readU16(blockAlign) && reader.readU16(format.bits);
    if (!read) return false;
    if (format.format == formatExtensible) {
        std::uint16_t extension = 0;
        if (chunk.size() < extensibleFormatSize || !reader.readU16(extension) || extension < extensionSize)
            return false;
        if (!reader.seek(24) || !reader.readU16(format.format)) return false;
    }
    if (!withEncoding(format.format, format.bits, [](auto) {})) return false;
    out = format;
    return true;
}

bool walkChunks(ByteReader reader, Contents& out) {
    std::string_view id;
    std::uint32_t size = 0;
    while (reader.readText(4, id) && reader.readU32(size)) {
        std::span<const unsigned char> payload;
        if (!reader.readBytes(size, payload)) return false;
        if (id == "fmt " && (size < plainFormatSize || !readFormat(payload, out.format))) return false;
        if (id == "data" && !out.data) out.data = payload;
        // The last chunk's pad byte may be missing.
        if (size % 2 != 0 && !reader.skip(1)) break;
    }
    return true;
}

bool startsAsWave(ByteReader& reader) {
    std::string_view riff;
    std::string_view wave;
    // The size in between is often wrong in files that were written as a stream.
    return reader.readText(4, riff) && riff == "RIFF" && reader.skip(4) && reader.readText(4, wave) &&
           wave == "WAVE";
}

template <typename Enc>
void foldToMono(const std::uint8_t* source, std::size_t channels, std::span<std::int16_t> out) {
    for (std::int16_t& sample : out) {
        double sum = 0.0;
        for (std::size_t c = 0; c < channels; ++c, source += Enc::size) sum += Enc::value(source);
        sample = detail::sampleFromFloat(sum / static_cast<double>(channels));
    }
}

// Each channel comes from the source's channel of the same number, or from its last.
template <typename Enc>
void mapChannels(const std::uint8_t* source, std::size_t channels, std::size_t outChannels,
                 std::span<std::int16_t> out) {
    std::size_t at = 0;
    for (; at < out.size(); source += channels * Enc::size)
        for (std::size_t c = 0; c < outChannels; ++c)
            out[at++] = Enc::sample(source + std::min(c, channels - 1) * Enc::size);
}

template <typename Enc>
void convert(const std::uint8_t* source, std::size_t channels, std::size_t outChannels,
             std::span<std::int16_t> out) {
    if (channels == outChannels) {
        for (std::int16_t& sample : out) {
            sample = Enc::sample(source);
            source += Enc::size;
        }
    } else if (outChannels == 1) {
        foldToMono<Enc>(source, channels, out);
    } else {
        mapChannels<Enc>(source, channels, outChannels, out);
    }
}

bool decodeFrames(const Format& format, std::span<const unsigned char> data, std::uint16_t wantedChannels,
                  DecodedFile& out) {
    const std::size_t frameSize = std::size_t{format.bits} / 8 * format.channels;
    if (frameSize > data.size()) return false;
    const std::size_t frames = data.size() / frameSize;
    out.sampleRate = format.sampleRate;
    out.channels = wantedChannels != 0 ? wantedChannels : format.channels;
    if (frames > out.samples.max_size() / out.channels) return false;
    out.samples.resize(frames * out.channels);
    return withEncoding(format.format, format.bits, [&](auto encoding) {
        convert<decltype(encoding)>(data.data(), format.channels, out.channels, out.samples);
    });
}

}  // namespace

bool decode(const void* bytes, unsigned length, DecodedFile* out, const DecodeOptions& options) try {
    if (!bytes || !out) return false;
    ByteReader reader({static_cast<const unsigned char*>(bytes), length});
    Contents contents;
    if (!startsAsWave(reader) || !walkChunks(reader, contents)) return false;
    if (!contents.format || !contents.data || contents.data->empty()) return false;
    if (contents.format->channels == 0 || contents.format->sampleRate == 0) return false;
    DecodedFile decoded;
    if (!decodeFrames(*contents.format, *contents.data, options.channels, decoded)) return false;
    *out = std::move(decoded);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

namespace detail {

bool readFileBytes(const char* path, std::vector<std::uint8_t>* out) {
    if (!path || !out) return false;
    auto content = kelmora::readWholeFileBytes(path);
    if (!content || content->empty()) return false;
    *out = std::move(*content);
    return true;
}

double readSampleAsFloat(const std::uint8_t* p, std::uint16_t format, std::uint16_t bits) {
    double value = 0.0;
    withEncoding(format, bits, [&](auto encoding) { value = encoding.value(p); });
    return value;
}

// Without branches: in sound, a guess at the sign fails every other time.
std::int16_t sampleFromFloat(double value) {
    constexpr double scales[] = {32767.0, 32768.0};
    // The largest double below a half. A half itself would carry the number just below a half up.
    constexpr double almostHalf = 0.49999999999999994;
    const double scaled = std::min(std::max(-1.0, value), 1.0) * scales[value < 0.0 ? 1 : 0];
    return static_cast<std::int16_t>(static_cast<int>(scaled + std::copysign(almostHalf, scaled)));
}

}  // namespace detail
}  // namespace vesper::wav
