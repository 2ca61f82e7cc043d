#pragma once

#include <optional>

#include "codec/adler32.h"
#include "codec/codec_test_support.h"
#include "codec/huffman.h"

namespace vh::png {

// A zlib inflater that decodes bit by bit, without tables, margins or windows: what the fast one must equal.
class PlainInflate {
public:
    static std::optional<Bytes> run(const Bytes& stream, std::size_t limit) {
        PlainInflate inflate(limit);
        if (!inflate.read(stream)) return std::nullopt;
        return inflate.output_;
    }

private:
    explicit PlainInflate(std::size_t limit) : limit_(limit) {}

    bool read(const Bytes& stream) {
        if (stream.size() < 6) return false;
        if ((stream[0] & 15) != 8 || load_u16_big(stream.data()) % 31 != 0 || (stream[1] & 32) != 0)
            return false;
        bits_ = BitReader({stream.data() + 2, stream.size() - 6});
        std::uint32_t final = 0;
        while (final == 0) {
            std::uint32_t type = 0;
            if (!bits_.take(1, final) || !bits_.take(2, type) || !read_block(type)) return false;
        }
        bits_.align_to_byte();
        return bits_.position == bits_.length &&
               load_u32_big(stream.data() + stream.size() - 4) == adler32_portable(output_);
    }

    bool read_block(std::uint32_t type) {
        if (type == 0) return read_stored();
        if (type == 1) {
            Bytes lengths(288, 8);
            std::fill(lengths.begin() + 144, lengths.begin() + 256, static_cast<unsigned char>(9));
            std::fill(lengths.begin() + 256, lengths.begin() + 280, static_cast<unsigned char>(7));
            return read_codes(lengths, Bytes(32, 5));
        }
        return type == 2 && read_dynamic();
    }

    bool read_stored() {
        bits_.align_to_byte();
        std::uint32_t size = 0;
        std::uint32_t complement = 0;
        if (!bits_.take(16, size) || !bits_.take(16, complement) || (size ^ complement) != 0xFFFF)
            return false;
        for (; size > 0; --size) {
            std::uint32_t byte = 0;
            if (!bits_.take(8, byte) || !put(byte)) return false;
        }
        return true;
    }

    bool read_dynamic() {
        static constexpr int order[] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
        std::uint32_t literals = 0;
        std::uint32_t distances = 0;
        std::uint32_t count = 0;
        if (!bits_.take(5, literals) || !bits_.take(5, distances) || !bits_.take(4, count)) return false;
        Bytes code_lengths(19);
        for (std::size_t i = 0; i < count + 4; ++i) {
            std::uint32_t length = 0;
            if (!bits_.take(3, length)) return false;
            code_lengths[static_cast<std::size_t>(order[i])] = static_cast<unsigned char>(length);
        }
        HuffmanTable table;
        if (!build_huffman_table(code_lengths, table, false)) return false;
        const std::size_t total = literals + 257 + distances + 1;
        Bytes lengths;
        while (lengths.size() < total) {
            if (!read_length(table, lengths)) return false;
        }
        lengths.resize(total);
        const auto split = lengths.begin() + static_cast<std::ptrdiff_t>(literals + 257);
        return read_codes({lengths.begin(), split}, {split, lengths.end()});
    }

    bool read_length(const HuffmanTable& table, Bytes& lengths) {
        std::uint16_t symbol = 0;
        std::uint32_t times = 0;
        if (!decode_symbol(table, bits_, symbol)) return false;
        if (symbol < 16) {
            lengths.push_back(static_cast<unsigned char>(symbol));
            return true;
        }
        if (symbol == 16 && lengths.empty()) return false;
        if (!bits_.take(symbol == 16 ? 2 : symbol == 17 ? 3 : 7, times)) return false;
        const unsigned char value = symbol == 16 ? lengths.back() : static_cast<unsigned char>(0);
        lengths.insert(lengths.end(), times + (symbol == 18 ? 11 : 3), value);
        return true;
    }

    bool read_codes(const Bytes& literal_lengths, const Bytes& distance_lengths) {
        HuffmanTable literals;
        HuffmanTable distances;
        if (!build_huffman_table(literal_lengths, literals, false)) return false;
        if (!build_huffman_table(distance_lengths, distances, true)) return false;
        for (;;) {
            std::uint16_t symbol = 0;
            if (!decode_symbol(literals, bits_, symbol)) return false;
            if (symbol == 256) return true;
            if (symbol < 256 ? !put(symbol) : !read_match(symbol, distances)) return false;
        }
    }

    bool read_match(std::uint32_t symbol, const HuffmanTable& distances) {
        static constexpr std::uint32_t lengths[] = {3,  4,  5,  6,   7,   8,   9,   10,  11, 13,
                                                    15, 17, 19, 23,  27,  31,  35,  43,  51, 59,
                                                    67, 83, 99, 115, 131, 163, 195, 227, 258};
        static constexpr std::uint32_t starts[] = {
            1,   2,   3,   4,   5,   7,    9,    13,   17,   25,   33,   49,   65,    97,    129,
            193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
        if (symbol > 285) return false;
        std::uint32_t extra = 0;
        if (!bits_.take(symbol < 265 || symbol == 285 ? 0 : (symbol - 261) / 4, extra)) return false;
        const std::uint32_t length = lengths[symbol - 257] + extra;
        std::uint16_t code = 0;
        if (!decode_symbol(distances, bits_, code) || code > 29) return false;
        if (!bits_.take(code < 4 ? 0 : code / 2u - 1, extra)) return false;
        const std::size_t distance = starts[code] + extra;
        if (distance > output_.size()) return false;
        for (std::uint32_t i = 0; i < length; ++i) {
            if (!put(output_[output_.size() - distance])) return false;
        }
        return true;
    }

    bool put(std::uint32_t byte) {
        if (output_.size() == limit_) return false;
        output_.push_back(static_cast<unsigned char>(byte));
        return true;
    }

    std::size_t limit_;
    BitReader bits_;
    Bytes output_;
};

}  // namespace vh::png
