#include "audio/ogg_pages.h"

#include <algorithm>
#include <array>

#include "base/byte_reader.h"

namespace vesper::ogg {
namespace {

constexpr std::size_t fixedSize = 27;
// Room for the tags of a file with a picture of its cover.
constexpr std::size_t largestHeader = std::size_t{16} << 20;

std::array<std::uint32_t, 256> checksumTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t value = i << 24;
        for (int bit = 0; bit < 8; ++bit) value = (value << 1) ^ ((value >> 31) != 0 ? 0x04c11db7u : 0u);
        table[i] = value;
    }
    return table;
}

// Joins the packets of one page after the other.
class StreamReader {
public:
    // False with a reason when the page does not fit behind those before.
    bool take(const Page& page, std::string& failure) {
        if (ended_) return fail(failure, "there is something behind its end");
        if (checksumOf(page) != page.checksum) return fail(failure, "its checksum is wrong");
        if (page.first != (count_ == 0)) return fail(failure, "it does not begin with its first page");
        if (count_ > 0 && page.serial != serial_) return fail(failure, "it holds more than one stream");
        if (page.number != count_) return fail(failure, "a page is missing before it");
        if (page.continues != packetIsOpen_) return fail(failure, "a packet is cut");
        serial_ = page.serial;
        ++count_;
        if (!takePackets(page, failure)) return false;
        if (page.position >= 0) {
            const auto position = static_cast<std::uint64_t>(page.position);
            if (position < stream_.frames) return fail(failure, "its positions go backwards");
            stream_.frames = position;
        }
        ended_ = page.last;
        return true;
    }
    bool isWhole() const { return ended_ && !packetIsOpen_ && packets_ >= 3; }
    Stream& stream() { return stream_; }

private:
    bool takePackets(const Page& page, std::string& failure) {
        std::size_t at = 0;
        for (const unsigned char length : page.lacing) {
            if (packets_ < 3) {
                std::vector<unsigned char>& header = stream_.headers[packets_];
                const Bytes part = page.body.subspan(at, length);
                if (header.size() + length > largestHeader) return fail(failure, "its tags are too long");
                header.insert(header.end(), part.begin(), part.end());
            }
            at += length;
            packetIsOpen_ = length == 255;
            if (packetIsOpen_) continue;
            if (packets_ >= 3) ++stream_.soundPackets;
            ++packets_;
        }
        return true;
    }
    bool fail(std::string& failure, const char* reason) const {
        failure = "page " + std::to_string(count_ + 1) + ": " + reason;
        return false;
    }

    Stream stream_;
    std::uint32_t serial_ = 0;
    std::uint32_t count_ = 0;
    std::uint64_t packets_ = 0;
    bool packetIsOpen_ = false;
    bool ended_ = false;
};

}  // namespace

std::optional<Page> readPage(Bytes bytes) {
    kelmora::ByteReader reader(bytes);
    Page page;
    std::string_view mark;
    std::uint8_t version = 0;
    std::uint8_t flags = 0;
    std::uint8_t segments = 0;
    std::uint64_t position = 0;
    if (!reader.readText(4, mark) || mark != "OggS" || !reader.readU8(version) || version != 0 ||
        !reader.readU8(flags) || !reader.readU64(position) || !reader.readU32(page.serial) ||
        !reader.readU32(page.number) || !reader.readU32(page.checksum) || !reader.readU8(segments) ||
        !reader.readBytes(segments, page.lacing))
        return std::nullopt;
    std::size_t size = 0;
    for (const unsigned char length : page.lacing) size += length;
    if (!reader.readBytes(size, page.body)) return std::nullopt;
    page.whole = bytes.first(fixedSize + segments + size);
    page.position = static_cast<std::int64_t>(position);
    page.continues = (flags & 1) != 0;
    page.first = (flags & 2) != 0;
    page.last = (flags & 4) != 0;
    return page;
}

std::uint32_t checksumOf(const Page& page) {
    static const std::array<std::uint32_t, 256> table = checksumTable();
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < page.whole.size(); ++i) {
        const bool isItself = i >= checksumOffset && i < checksumOffset + 4;
        const unsigned char byte = isItself ? 0 : page.whole[i];
        sum = (sum << 8) ^ table[(sum >> 24) ^ byte];
    }
    return sum;
}

std::optional<Stream> readStream(Bytes file, std::string& failure) {
    StreamReader reader;
    for (std::size_t count = 1; !file.empty(); ++count) {
        const auto page = readPage(file);
        if (!page) {
            failure = "page " + std::to_string(count) + ": it is cut off or damaged";
            return std::nullopt;
        }
        if (!reader.take(*page, failure)) return std::nullopt;
        file = file.subspan(page->whole.size());
    }
    if (!reader.isWhole()) {
        failure = "it ends too early";
        return std::nullopt;
    }
    return std::move(reader.stream());
}

}  // namespace vesper::ogg
