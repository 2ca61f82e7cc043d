#include "audio/vorbis_headers.h"

#include <algorithm>
#include <bit>

#include "base/byte_reader.h"

namespace vesper::ogg {
namespace {

// Far beyond what encoders write.
constexpr std::uint32_t mostEntries = 1u << 16;
constexpr std::uint32_t mostDimensions = 256;
constexpr std::uint64_t mostValues = 1u << 20;  // in all tables of a file
constexpr std::uint32_t mostChannels = 8;
constexpr std::uint32_t mostFramesASecond = 768000;

bool beginsWith(kelmora::ByteReader& reader, std::uint8_t kind) {
    std::uint8_t seen = 0;
    std::string_view name;
    return reader.readU8(seen) && seen == kind && reader.readText(6, name) && name == "vorbis";
}

std::optional<VorbisFacts> readIdentification(Bytes packet) {
    kelmora::ByteReader reader(packet);
    VorbisFacts facts;
    std::uint32_t version = 0;
    std::uint8_t channels = 0;
    std::uint8_t blocks = 0;
    std::uint8_t end = 0;
    if (!beginsWith(reader, 1) || !reader.readU32(version) || version != 0 || !reader.readU8(channels) ||
        !reader.readU32(facts.sampleRate) || !reader.skip(12) || !reader.readU8(blocks) ||
        !reader.readU8(end))
        return std::nullopt;
    const std::uint32_t shorter = blocks & 15;
    const std::uint32_t longer = blocks >> 4;
    const bool good = channels >= 1 && channels <= mostChannels && facts.sampleRate >= 1 &&
                      facts.sampleRate <= mostFramesASecond && shorter >= 6 && shorter <= longer &&
                      longer <= 13 && (end & 1) != 0;
    facts.channels = channels;
    facts.longestBlock = 1u << longer;
    return good ? std::optional(facts) : std::nullopt;
}

bool tagsAreWhole(Bytes packet) {
    kelmora::ByteReader reader(packet);
    std::uint32_t length = 0;
    std::uint32_t count = 0;
    if (!beginsWith(reader, 3) || !reader.readU32(length) || !reader.skip(length) || !reader.readU32(count))
        return false;
    if (count > reader.remaining() / 4) return false;
    for (; count > 0; --count)
        if (!reader.readU32(length) || !reader.skip(length)) return false;
    std::uint8_t end = 0;
    return reader.readU8(end) && (end & 1) != 0;
}

// Bits from the lowest of each byte on. Behind the end there are zeros, and `overrun` tells.
class BitReader {
public:
    explicit BitReader(Bytes bytes) : bytes_(bytes) {}

    std::uint32_t bits(unsigned count) {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < count; ++i, ++at_) {
            if (at_ / 8 >= bytes_.size()) continue;
            const unsigned byte = bytes_[static_cast<std::size_t>(at_ / 8)];
            value |= (byte >> (at_ % 8) & 1u) << i;
        }
        return value;
    }
    bool flag() { return bits(1) != 0; }
    void skip(std::uint64_t count) { at_ += count; }
    bool overrun() const { return at_ > std::uint64_t{bytes_.size()} * 8; }

private:
    Bytes bytes_;
    std::uint64_t at_ = 0;
};

// Of a table that tells its lengths in rising order.
bool skipOrderedLengths(BitReader& reader, std::uint32_t entries) {
    unsigned length = reader.bits(5) + 1;
    for (std::uint32_t entry = 0; entry < entries; ++length) {
        const std::uint32_t left = entries - entry;
        const std::uint32_t count = reader.bits(static_cast<unsigned>(std::bit_width(left)));
        if (count > left || length > 32 || reader.overrun()) return false;
        entry += count;
    }
    return true;
}

void skipLengths(BitReader& reader, std::uint32_t entries) {
    const bool sparse = reader.flag();
    for (std::uint32_t entry = 0; entry < entries && !reader.overrun(); ++entry)
        if (!sparse || reader.flag()) reader.skip(5);
}

// The largest number whose power is not above the count of entries.
std::uint32_t rootOf(std::uint32_t entries, std::uint32_t dimensions) {
    const auto fits = [&](std::uint32_t root) {
        std::uint64_t power = 1;
        for (std::uint32_t i = 0; i < dimensions && power <= entries; ++i) power *= root;
        return power <= entries;
    };
    std::uint32_t root = 0;
    while (root < entries && fits(root + 1)) ++root;
    return root;
}

// One table of code words; how many values it holds, or nothing when it cannot be right.
std::optional<std::uint64_t> readCodebook(BitReader& reader) {
    if (reader.bits(24) != 0x564342) return std::nullopt;
    const std::uint32_t dimensions = reader.bits(16);
    const std::uint32_t entries = reader.bits(24);
    if (dimensions < 1 || dimensions > mostDimensions || entries < 1 || entries > mostEntries)
        return std::nullopt;
    if (reader.flag()) {
        if (!skipOrderedLengths(reader, entries)) return std::nullopt;
    } else {
        skipLengths(reader, entries);
    }
    const std::uint32_t lookup = reader.bits(4);
    if (lookup > 2) return std::nullopt;
    const std::uint64_t values = std::uint64_t{entries} * dimensions;
    if (lookup != 0) {
        reader.skip(64);
        const std::uint32_t width = reader.bits(4) + 1;
        reader.skip(1 + width * (lookup == 1 ? rootOf(entries, dimensions) : values));
    }
    if (reader.overrun()) return std::nullopt;
    return lookup != 0 ? values : entries;
}

bool tablesAreSound(Bytes packet) {
    kelmora::ByteReader start(packet);
    if (!beginsWith(start, 5)) return false;
    BitReader reader(packet.subspan(start.position()));
    std::uint64_t values = 0;
    for (std::uint32_t books = reader.bits(8) + 1; books > 0; --books) {
        const auto book = readCodebook(reader);
        if (!book) return false;
        values += *book;
        if (values > mostValues) return false;
    }
    return true;
}

}  // namespace

std::optional<VorbisFacts> readHeaders(const Stream& stream, std::string& failure) {
    const auto facts = readIdentification(stream.headers[0]);
    if (!facts)
        failure = "it holds no Vorbis sound that can be played";
    else if (!tagsAreWhole(stream.headers[1]))
        failure = "its tags are damaged";
    else if (!tablesAreSound(stream.headers[2]))
        failure = "its tables are damaged";
    else
        return facts;
    return std::nullopt;
}

}  // namespace vesper::ogg
