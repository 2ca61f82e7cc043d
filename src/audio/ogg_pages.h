#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

// The outer form of Ogg files that hold one Vorbis stream.
namespace vesper::ogg {

using Bytes = std::span<const unsigned char>;

// One page; its parts are borrowed from the file.
struct Page {
    Bytes whole;
    bool continues = false;  // its first packet began on the page before
    bool first = false;
    bool last = false;
    std::int64_t position = -1;  // frames up to its end; -1 when no packet ends on it
    std::uint32_t serial = 0;
    std::uint32_t number = 0;
    std::uint32_t checksum = 0;
    Bytes lacing;
    Bytes body;
};

// The page that the bytes begin with; nothing when there is no whole one.
std::optional<Page> readPage(Bytes bytes);
// What the page's checksum has to be. It stands at this offset, four bytes, the lowest first.
std::uint32_t checksumOf(const Page& page);
inline constexpr std::size_t checksumOffset = 22;

// A file whose pages are all sound.
struct Stream {
    std::vector<unsigned char> headers[3];  // the first packets, whole
    std::uint64_t soundPackets = 0;         // behind those
    std::uint64_t frames = 0;
};

// Walks the whole file. Nothing, with the reason in `failure`, for a file that is cut off or damaged
// anywhere, or holds more than one stream.
std::optional<Stream> readStream(Bytes file, std::string& failure);

}  // namespace vesper::ogg
