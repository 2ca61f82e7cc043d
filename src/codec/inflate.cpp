#include "codec/inflate.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "codec/adler32.h"
#include "codec/fast_bits.h"
#include "codec/match_copy.h"

namespace vh::png {
namespace {

constexpr std::size_t zlibHeaderSize = 2;
constexpr std::size_t zlibTrailerSize = 4;
constexpr std::size_t historySize = 32768;
constexpr std::size_t windowSize = historySize + 131072;
// What one turn of the fast loop may write and read at most, with the overrun of its wide accesses.
constexpr unsigned literalLookups = 4;
constexpr std::size_t outputMargin = 2 * literalLookups + longestMatch + matchOverrun;
constexpr std::size_t inputMargin = 24;
// A distance and the lookup of what follows it.
constexpr unsigned distanceAndNextBits = maximumCodeLength + 13 + BlockCodes::literalBits;

// The entry's value with its extra bits, taken from the buffer as it was before the entry was dropped.
inline std::uint32_t value_with_extra(std::uint32_t entry, std::uint64_t before) {
    const std::uint64_t bits = before & ((std::uint64_t{1} << Lookup::total_bits(entry)) - 1);
    return Lookup::value(entry) + static_cast<std::uint32_t>(bits >> Lookup::code_bits(entry));
}

// Writes one literal or two; behind a single one a byte of no meaning.
inline unsigned char* put_literals(std::uint32_t entry, unsigned char* out) {
    store_u16(out, static_cast<std::uint16_t>(Lookup::value(entry)));
    return out + Lookup::literal_count(entry);
}

}  // namespace

bool Inflater::start(std::span<const ByteSpan> spans, std::uint32_t expected_size) {
    ByteSpan stream;
    if (!gather(spans, stream)) return false;
    const std::uint64_t possible = std::min<std::uint64_t>(expected_size, stream.size() * largestExpansion);
    if (possible > std::size_t{std::numeric_limits<std::ptrdiff_t>::max()} - outputMargin) return false;
    output_.resize(static_cast<std::size_t>(possible) + outputMargin);
    return inflate_zlib_stream(stream, expected_size);
}

bool Inflater::start(std::span<const ByteSpan> spans, std::uint32_t expected_size, InflateSink& sink) {
    ByteSpan stream;
    if (!gather(spans, stream)) return false;
    const std::uint64_t most = std::uint64_t{expected_size} + outputMargin;
    output_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(windowSize, most)));
    sink_ = &sink;
    const bool inflated = inflate_zlib_stream(stream, expected_size);
    sink_ = nullptr;
    return inflated;
}

bool Inflater::inflate_bytes(const unsigned char* data, std::size_t size, kelmora::ByteBuffer& output) {
    output.clear();
    if (size == 0) return false;
    constexpr auto limit = std::numeric_limits<std::uint32_t>::max();
    output_.resize(4 * std::min<std::size_t>(size, windowSize) + outputMargin);
    if (!inflate_zlib_stream({data, size}, limit)) return false;
    output.swap(output_);
    return true;
}

bool Inflater::inflate_front(ByteSpan data, std::uint32_t limit, kelmora::ByteBuffer& output) {
    output.clear();
    const std::uint64_t possible = std::min<std::uint64_t>(limit, data.size() * largestExpansion);
    output_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(possible, windowSize)) + outputMargin);
    if (!begin_zlib_stream(data, limit)) return false;
    bits_.length += zlibTrailerSize;
    if (!inflate_blocks()) return false;
    bits_.align_to_byte();
    sum_up();
    const ByteSpan rest = data.subspan(zlibHeaderSize + bits_.position);
    if (rest.size() < zlibTrailerSize || load_u32_big(rest.data()) != checksum_) return false;
    output_.resize(written_);
    output.swap(output_);
    return true;
}

bool Inflater::gather(std::span<const ByteSpan> spans, ByteSpan& stream) {
    std::uint64_t total = 0;
    for (const ByteSpan span : spans) total += span.size();
    if (total > std::numeric_limits<std::uint32_t>::max()) return false;
    if (spans.size() == 1) {
        stream = spans.front();
        return true;
    }
    input_.resize(static_cast<std::size_t>(total));
    unsigned char* place = input_.data();
    for (const ByteSpan span : spans) place = std::copy(span.begin(), span.end(), place);
    stream = input_;
    return true;
}

bool Inflater::begin_zlib_stream(ByteSpan stream, std::uint32_t limit) {
    written_ = summed_ = handed_ = 0;
    slid_ = 0;
    limit_ = limit;
    checksum_ = 1;
    if (stream.size() < zlibHeaderSize + zlibTrailerSize) return false;
    const std::uint32_t header = load_u16_big(stream.data());
    const bool deflate = (stream[0] & 0x0F) == 8;
    const bool has_dictionary = (stream[1] & 0x20) != 0;
    if (!deflate || has_dictionary || header % 31 != 0) return false;
    bits_ = BitReader(stream.subspan(zlibHeaderSize, stream.size() - zlibHeaderSize - zlibTrailerSize));
    return true;
}

bool Inflater::inflate_zlib_stream(ByteSpan stream, std::uint32_t limit) {
    if (!begin_zlib_stream(stream, limit) || !inflate_blocks()) return false;
    if (!ends_cleanly(load_u32_big(stream.last(zlibTrailerSize).data()))) return false;
    if (sink_ != nullptr) return hand_over();
    output_.resize(written_);
    return true;
}

bool Inflater::ends_cleanly(std::uint32_t checksum) {
    bits_.align_to_byte();
    sum_up();
    return bits_.position == bits_.length && checksum_ == checksum;
}

bool Inflater::inflate_blocks() {
    std::uint32_t final = 0;
    while (final == 0) {
        std::uint32_t type = 0;
        if (!bits_.take(1, final) || !bits_.take(2, type)) return false;
        bool inflated = false;
        if (type == 0) inflated = inflate_stored();
        if (type == 1) inflated = inflate_codes(fixed_codes());
        if (type == 2) inflated = inflate_dynamic();
        if (!inflated) return false;
    }
    return true;
}

bool Inflater::inflate_stored() {
    bits_.align_to_byte();
    std::uint32_t size = 0;
    std::uint32_t complement = 0;
    if (!bits_.take(16, size) || !bits_.take(16, complement) || (size ^ complement) != 0xFFFF) return false;
    bits_.align_to_byte();
    if (size > bits_.length - bits_.position || size > allowance()) return false;
    std::size_t left = size;
    while (left > 0) {
        if (!make_room()) return false;
        const std::size_t count = std::min(left, room());
        std::memcpy(output_.data() + written_, bits_.data + bits_.position, count);
        written_ += count;
        bits_.position += count;
        left -= count;
    }
    return true;
}

bool Inflater::inflate_dynamic() {
    std::uint32_t literal_count = 0;
    std::uint32_t distance_count = 0;
    if (!bits_.take(5, literal_count) || !bits_.take(5, distance_count)) return false;
    literal_count += 257;
    distance_count += 1;
    std::array<std::uint8_t, maximumSymbols + distanceSymbols> lengths{};
    const auto used = std::span(lengths).first(literal_count + distance_count);
    if (!read_code_lengths(used)) return false;
    return build_block_codes(used.first(literal_count), used.subspan(literal_count), codes_) &&
           inflate_codes(codes_);
}

bool Inflater::read_code_lengths(std::span<std::uint8_t> lengths) {
    static constexpr std::array<std::uint8_t, LengthCode::symbols> order{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                                         11, 4,  12, 3, 13, 2, 14, 1, 15};
    std::uint32_t count = 0;
    if (!bits_.take(4, count)) return false;
    std::array<std::uint8_t, LengthCode::symbols> code_lengths{};
    for (std::size_t i = 0; i < count + 4; ++i) {
        std::uint32_t length = 0;
        if (!bits_.take(3, length)) return false;
        code_lengths[order[i]] = static_cast<std::uint8_t>(length);
    }
    LengthCode code;
    return build_length_code(code_lengths, code) && expand_code_lengths(code, lengths);
}

bool Inflater::expand_code_lengths(const LengthCode& code, std::span<std::uint8_t> lengths) {
    for (std::size_t filled = 0; filled < lengths.size();) {
        std::uint32_t entry = 0;
        if (!take_entry(code.entries, LengthCode::bits, entry) || (entry & Lookup::exceptional) != 0)
            return false;
        const std::uint32_t symbol = Lookup::value(entry);
        if (symbol < 16) {
            lengths[filled++] = static_cast<std::uint8_t>(symbol);
            continue;
        }
        if (symbol == 16 && filled == 0) return false;
        const std::uint8_t repeated = symbol == 16 ? lengths[filled - 1] : std::uint8_t{0};
        std::uint32_t times = 0;
        if (!bits_.take(symbol == 16 ? 2 : symbol == 17 ? 3 : 7, times)) return false;
        times += symbol == 18 ? 11 : 3;
        for (; times > 0 && filled < lengths.size(); --times) lengths[filled++] = repeated;
    }
    return true;
}

bool Inflater::inflate_codes(const BlockCodes& codes) {
    for (;;) {
        if (!make_room()) return false;
        Step step = decode_fast(codes);
        if (step == Step::OutOfMargin) {
            if (!make_room()) return false;
            step = decode_one(codes);
        }
        if (step == Step::Failed) return false;
        if (step == Step::EndOfBlock) return true;
    }
}

Inflater::Step Inflater::decode_fast(const BlockCodes& codes) {
    const std::size_t most = static_cast<std::size_t>(std::min<std::uint64_t>(room(), allowance()));
    if (most < outputMargin || bits_.length - bits_.position < inputMargin) return Step::OutOfMargin;
    unsigned char* out = output_.data() + written_;
    const unsigned char* const out_stop = out + (most - outputMargin);
    const unsigned char* const in_stop = bits_.data + (bits_.length - inputMargin);
    const std::uint32_t* const literals = codes.literals.data();
    const std::uint32_t* const distances = codes.distances.data();

    FastBits bits(bits_);
    bits.refill();
    std::uint32_t entry = literals[bits.peek(BlockCodes::literalBits)];
    Step step = Step::OutOfMargin;
    // Each turn: up to four lookups of literals, or up to three and a match. The next entry is fetched before
    // the refill, which leaves its bits as they are, and before the match is copied.
    do {
        std::uint64_t before = bits.drop(entry);
        unsigned lookups = 0;
        while ((entry & Lookup::literal) != 0) {
            out = put_literals(entry, out);
            entry = literals[bits.peek(BlockCodes::literalBits)];
            if (++lookups == literalLookups) break;
            before = bits.drop(entry);
        }
        if (lookups == literalLookups) {
            bits.refill();
            continue;
        }
        if ((entry & Lookup::exceptional) != 0) [[unlikely]] {
            if ((entry & Lookup::subtable) != 0) {
                entry = literals[Lookup::value(entry) + bits.peek(Lookup::code_bits(entry))];
                before = bits.drop(entry);
            }
            if ((entry & Lookup::literal) != 0) {
                out = put_literals(entry, out);
                entry = literals[bits.peek(BlockCodes::literalBits)];
                bits.refill();
                continue;
            }
            if ((entry & Lookup::exceptional) != 0) {
                step = (entry & Lookup::endOfBlock) != 0 ? Step::EndOfBlock : Step::Failed;
                break;
            }
        }
        const std::uint32_t length = value_with_extra(entry, before);
        if (bits.count() < distanceAndNextBits) bits.refill();
        entry = distances[bits.peek(BlockCodes::distanceBits)];
        before = bits.drop(entry);
        if ((entry & Lookup::exceptional) != 0) [[unlikely]] {
            if ((entry & Lookup::subtable) == 0) {
                step = Step::Failed;
                break;
            }
            entry = distances[Lookup::value(entry) + bits.peek(Lookup::code_bits(entry))];
            before = bits.drop(entry);
            if ((entry & Lookup::exceptional) != 0) {
                step = Step::Failed;
                break;
            }
        }
        const std::uint32_t distance = value_with_extra(entry, before);
        // The window always holds as much of the past as a distance can reach, or all there was.
        if (distance > static_cast<std::size_t>(out - output_.data())) {
            step = Step::Failed;
            break;
        }
        entry = literals[bits.peek(BlockCodes::literalBits)];
        bits.refill();
        copy_match_wide(out, distance, length);
        out += length;
    } while (out <= out_stop && bits.next() <= in_stop);
    bits.save(bits_);
    written_ = static_cast<std::size_t>(out - output_.data());
    return step;
}

// The same for one symbol, with every check; `make_room` has seen to the space.
Inflater::Step Inflater::decode_one(const BlockCodes& codes) {
    std::uint32_t entry = 0;
    if (!take_entry(codes.literals, BlockCodes::literalBits, entry)) return Step::Failed;
    if ((entry & Lookup::literal) != 0) {
        if (allowance() == 0) return Step::Failed;
        output_[written_++] = static_cast<unsigned char>(Lookup::value(entry));
        return Step::OutOfMargin;
    }
    if ((entry & Lookup::endOfBlock) != 0) return Step::EndOfBlock;
    std::uint32_t length = 0;
    std::uint32_t distance = 0;
    const bool matched = take_value(entry, length) &&
                         take_entry(codes.distances, BlockCodes::distanceBits, entry) &&
                         take_value(entry, distance) && copy_match(length, distance);
    return matched ? Step::OutOfMargin : Step::Failed;
}

bool Inflater::take_entry(std::span<const std::uint32_t> entries, unsigned first_bits, std::uint32_t& entry) {
    bits_.refill();
    entry = entries[bits_.peek(first_bits)];
    if ((entry & Lookup::subtable) != 0) {
        const std::size_t start = Lookup::value(entry);
        const unsigned more_bits = Lookup::code_bits(entry);
        if (!bits_.drop(first_bits)) return false;
        entry = entries[start + bits_.peek(more_bits)];
    }
    return bits_.drop(Lookup::code_bits(entry));
}

bool Inflater::take_value(std::uint32_t entry, std::uint32_t& value) {
    std::uint32_t extra = 0;
    if ((entry & Lookup::exceptional) != 0) return false;
    if (!bits_.take(Lookup::total_bits(entry) - Lookup::code_bits(entry), extra)) return false;
    value = Lookup::value(entry) + extra;
    return true;
}

bool Inflater::copy_match(std::uint32_t length, std::uint32_t distance) {
    if (distance > written_ || length > allowance()) return false;
    for (; length > 0; --length, ++written_) output_[written_] = output_[written_ - distance];
    return true;
}

bool Inflater::make_room() {
    if (room() >= outputMargin) return true;
    if (sink_ == nullptr) return grow();
    if (!hand_over()) return false;
    slide();
    // A sink that waits for more than the window holds, as for a very long row, gets a larger one.
    return room() >= std::max(output_.size() / 2, outputMargin) || grow();
}

bool Inflater::grow() {
    const std::size_t size = output_.size();
    if (size > std::size_t{std::numeric_limits<std::ptrdiff_t>::max()} / 2 - outputMargin) return false;
    output_.resize(2 * size + outputMargin);
    return true;
}

bool Inflater::hand_over() {
    sum_up();
    std::size_t taken = 0;
    if (!sink_->take({output_.data() + handed_, written_ - handed_}, taken)) return false;
    handed_ += taken;
    return true;
}

void Inflater::slide() {
    const std::size_t past = written_ - std::min(written_, historySize);
    const std::size_t gone = std::min(handed_, past);
    std::memmove(output_.data(), output_.data() + gone, written_ - gone);
    written_ -= gone;
    summed_ -= gone;
    handed_ -= gone;
    slid_ += gone;
}

void Inflater::sum_up() {
    checksum_ = adler32({output_.data() + summed_, written_ - summed_}, checksum_);
    summed_ = written_;
}

}  // namespace vh::png
