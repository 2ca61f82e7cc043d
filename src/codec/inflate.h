#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/byte_buffer.h"
#include "codec/bit_reader.h"
#include "codec/block_codes.h"

namespace vh::png {

using ByteSpan = std::span<const unsigned char>;

// No deflate stream yields more than this many bytes for each of its own: two bits can stand for 258 bytes.
constexpr std::uint64_t largestExpansion = 1032;

// Takes inflated bytes as they come, while they are still in the cache.
class InflateSink {
public:
    virtual ~InflateSink() = default;
    // Uses up as many of `bytes` as it can, the oldest first, and tells how many. The rest comes again with
    // more behind it. False gives the stream up.
    virtual bool take(ByteSpan bytes, std::size_t& taken) = 0;
};

// Inflates zlib streams, and only flawless ones: whole, with the right checksum, and unless said otherwise
// without a byte too many.
class Inflater {
public:
    using BitReader = png::BitReader;

    // Inflates the concatenated spans into `output()`, which must not pass `expected_size` bytes.
    bool start(std::span<const ByteSpan> spans, std::uint32_t expected_size);
    // The same with the output handed to `sink` piece by piece; only a window of it is held.
    bool start(std::span<const ByteSpan> spans, std::uint32_t expected_size, InflateSink& sink);
    const kelmora::ByteBuffer& output() const { return output_; }

    // Inflates one block of bytes of unknown output size. `output` is empty after a failure.
    bool inflate_bytes(const unsigned char* data, std::size_t size, kelmora::ByteBuffer& output);
    // The same for a stream whose end is not known: bytes behind its checksum are ignored. More output than
    // `limit` bytes is a failure.
    bool inflate_front(ByteSpan data, std::uint32_t limit, kelmora::ByteBuffer& output);

private:
    enum class Step { Failed, EndOfBlock, OutOfMargin };

    bool gather(std::span<const ByteSpan> spans, ByteSpan& stream);
    bool begin_zlib_stream(ByteSpan stream, std::uint32_t limit);
    bool inflate_zlib_stream(ByteSpan stream, std::uint32_t limit);
    bool inflate_blocks();
    bool inflate_stored();
    bool inflate_dynamic();
    bool inflate_codes(const BlockCodes& codes);
    Step decode_fast(const BlockCodes& codes);
    Step decode_one(const BlockCodes& codes);
    bool take_entry(std::span<const std::uint32_t> entries, unsigned first_bits, std::uint32_t& entry);
    bool take_value(std::uint32_t entry, std::uint32_t& value);
    bool copy_match(std::uint32_t length, std::uint32_t distance);
    bool read_code_lengths(std::span<std::uint8_t> lengths);
    bool expand_code_lengths(const LengthCode& code, std::span<std::uint8_t> lengths);
    bool ends_cleanly(std::uint32_t checksum);

    // Bytes that may still be written before the limit.
    std::uint64_t allowance() const { return limit_ - slid_ - written_; }
    std::size_t room() const { return output_.size() - written_; }
    bool make_room();
    bool hand_over();
    void slide();
    bool grow();
    void sum_up();

    kelmora::ByteBuffer input_;
    kelmora::ByteBuffer output_;  // all of the output, or with a sink the latest of it
    InflateSink* sink_ = nullptr;
    BitReader bits_;
    std::size_t written_ = 0;  // bytes of output_ that hold output
    std::size_t summed_ = 0;   // of those, how many the checksum counts
    std::size_t handed_ = 0;   // of those, how many the sink is done with
    std::uint64_t slid_ = 0;   // output that has left the window
    std::uint64_t limit_ = 0;
    std::uint32_t checksum_ = 1;
    BlockCodes codes_;
};

}  // namespace vh::png
