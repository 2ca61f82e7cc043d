#include "codec/inflate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "codec/plain_inflate.h"

namespace vh::png {
namespace {

// Takes whole records of a fixed size only, as rows are taken.
class RecordSink : public InflateSink {
public:
    explicit RecordSink(std::size_t record) : record_(record) {}
    bool take(ByteSpan bytes, std::size_t& taken) override {
        taken = bytes.size() / record_ * record_;
        bytes = bytes.first(taken);
        output_.insert(output_.end(), bytes.begin(), bytes.end());
        return true;
    }
    const Bytes& output() const { return output_; }

private:
    std::size_t record_;
    Bytes output_;
};

// Writes deflate bits for random but mostly valid blocks of every kind, with long and with incomplete codes.
class RandomStream {
public:
    RandomStream(unsigned seed, std::size_t size) : random_(seed) {
        const unsigned blocks = 1 + next() % 4;
        for (unsigned i = 0; i < blocks; ++i) add_block(i + 1 == blocks, size / blocks);
        align();
    }
    // The zlib stream with the right checksum for `output`.
    Bytes wrapped(const Bytes& output) const {
        Bytes stream(bytes_.size() + 6);
        stream[0] = 0x78;
        stream[1] = 0x01;
        std::copy(bytes_.begin(), bytes_.end(), stream.begin() + 2);
        store_u32_big(stream.data() + stream.size() - 4, adler32_portable(output));
        return stream;
    }
    const Bytes& output() const { return output_; }

private:
    struct Code {
        Bytes lengths;
        std::vector<unsigned> codes;
    };

    unsigned next() { return static_cast<unsigned>(random_()); }
    void put(unsigned value, unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            if (used_ % 8 == 0) bytes_.push_back(0);
            bytes_.back() = static_cast<unsigned char>(bytes_.back() | ((value >> i) & 1) << (used_ % 8));
            ++used_;
        }
    }
    void align() { used_ = bytes_.size() * 8; }
    void put_symbol(const Code& code, std::size_t symbol) {
        for (unsigned bit = code.lengths[symbol]; bit-- > 0;) put(code.codes[symbol] >> bit, 1);
    }

    // Random lengths that Kraft's sum allows; every symbol of `needed` gets a code.
    Code random_code(std::size_t symbols, const std::vector<std::size_t>& needed) {
        Code code{Bytes(symbols), std::vector<unsigned>(symbols)};
        unsigned room = 1u << 15;
        unsigned left = static_cast<unsigned>(needed.size());
        for (const std::size_t symbol : needed) {
            unsigned length = 1 + next() % 15;
            while (length < 15 && (1u << (15 - length)) + (left - 1) > room) ++length;
            code.lengths[symbol] = static_cast<unsigned char>(length);
            room -= 1u << (15 - length);
            --left;
        }
        unsigned next = 0;
        for (unsigned length = 1; length <= 15; ++length, next <<= 1) {
            for (std::size_t i = 0; i < symbols; ++i) {
                if (code.lengths[i] == length) code.codes[i] = next++;
            }
        }
        return code;
    }

    void put_codes(const Code& literals, const Code& distances) {
        put(static_cast<unsigned>(literals.lengths.size()) - 257, 5);
        put(static_cast<unsigned>(distances.lengths.size()) - 1, 5);
        put(15, 4);
        static constexpr unsigned order[] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                             11, 4,  12, 3, 13, 2, 14, 1, 15};
        for (const unsigned symbol : order) put(symbol < 16 ? 4 : 0, 3);
        for (const Code* code : {&literals, &distances}) {
            for (const unsigned length : code->lengths) {
                for (unsigned bit = 4; bit-- > 0;) put(length >> bit, 1);
            }
        }
    }

    void add_block(bool last, std::size_t size) {
        put(last ? 1 : 0, 1);
        if (next() % 5 == 0) {
            put(0, 2);
            align();
            const auto count = static_cast<unsigned>(std::min<std::size_t>(size, next() % 3000));
            put(count, 16);
            put(~count & 0xFFFF, 16);
            for (unsigned i = 0; i < count; ++i) {
                output_.push_back(static_cast<unsigned char>(next()));
                put(output_.back(), 8);
            }
            return;
        }
        put(2, 2);
        std::vector<std::size_t> used{256};
        const unsigned share = 1 + next() % 8;
        for (std::size_t i = 0; i < 286; ++i) {
            if (i != 256 && (i == 65 || next() % 8 < share)) used.push_back(i);
        }
        std::shuffle(used.begin(), used.end(), random_);
        std::vector<std::size_t> used_distances;
        for (std::size_t i = 0; i < 30; ++i) {
            if (next() % 4 != 0) used_distances.push_back(i);
        }
        std::shuffle(used_distances.begin(), used_distances.end(), random_);
        const Code literals = random_code(286, used);
        const Code distances = random_code(30, used_distances);
        put_codes(literals, distances);
        fill_block(size, literals, used, distances, used_distances);
        put_symbol(literals, 256);
    }

    void fill_block(std::size_t size, const Code& literals, const std::vector<std::size_t>& used,
                    const Code& distances, const std::vector<std::size_t>& used_distances) {
        const std::size_t end = output_.size() + size;
        while (output_.size() < end) {
            const std::size_t symbol = used[next() % used.size()];
            if (symbol < 256) {
                put_symbol(literals, symbol);
                output_.push_back(static_cast<unsigned char>(symbol));
            } else if (symbol > 256 && !used_distances.empty()) {
                put_match(literals, symbol, distances, used_distances[next() % used_distances.size()]);
            }
        }
    }

    void put_match(const Code& literals, std::size_t symbol, const Code& distances, std::size_t code) {
        std::size_t distance = 1;
        for (std::size_t i = 0; i < code; ++i) distance += std::size_t{1} << (i < 4 ? 0 : i / 2 - 1);
        std::size_t length = 3;
        for (std::size_t i = 257; i < symbol; ++i) length += std::size_t{1} << (i < 265 ? 0 : (i - 261) / 4);
        const unsigned length_bits =
            symbol < 265 || symbol == 285 ? 0 : static_cast<unsigned>(symbol - 261) / 4;
        const unsigned distance_bits = code < 4 ? 0 : static_cast<unsigned>(code / 2 - 1);
        const unsigned length_extra = next() & ((1u << length_bits) - 1);
        const unsigned distance_extra = next() & ((1u << distance_bits) - 1);
        if (symbol == 285) length = 258;
        length += length_extra;
        distance += distance_extra;
        if (distance > output_.size()) return;
        put_symbol(literals, symbol);
        put(length_extra, length_bits);
        put_symbol(distances, code);
        put(distance_extra, distance_bits);
        for (std::size_t i = 0; i < length; ++i) output_.push_back(output_[output_.size() - distance]);
    }

    std::mt19937 random_;
    Bytes bytes_;
    std::size_t used_ = 0;
    Bytes output_;
};

// Every way in must come to the plain inflater's answer.
void expect_as_plain(const Bytes& stream, std::uint32_t limit, std::size_t record) {
    const auto expected = PlainInflate::run(stream, limit);
    const std::size_t half = stream.size() / 2;
    const ByteSpan spans[] = {ByteSpan(stream).first(half), ByteSpan(stream).subspan(half)};

    Inflater whole;
    ASSERT_EQ(whole.start(spans, limit), expected.has_value());
    ASSERT_TRUE(!expected || std::ranges::equal(whole.output(), *expected));

    RecordSink sink(record);
    Inflater windowed;
    ASSERT_EQ(windowed.start(spans, limit, sink), expected.has_value());
    const std::size_t records = expected ? expected->size() / record * record : 0;
    ASSERT_TRUE(!expected || std::ranges::equal(sink.output(), std::span(*expected).first(records)));

    kelmora::ByteBuffer output(3);
    const auto unlimited = PlainInflate::run(stream, std::numeric_limits<std::uint32_t>::max());
    ASSERT_EQ(windowed.inflate_bytes(stream.data(), stream.size(), output), unlimited.has_value());
    ASSERT_TRUE(std::ranges::equal(output, unlimited.value_or(Bytes{})));
}

TEST(Inflate, EqualsThePlainFormOnRandomStreams) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        const RandomStream made(seed, seed % 10 == 0 ? 400000 : 5000);
        const Bytes stream = made.wrapped(made.output());
        ASSERT_EQ(PlainInflate::run(stream, made.output().size()), made.output());
        const auto size = static_cast<std::uint32_t>(made.output().size());
        expect_as_plain(stream, size, 1 + seed * 997);
        expect_as_plain(stream, size - 1, 1);
        expect_as_plain(stream, size + 1000, size);
    }
}

TEST(Inflate, EqualsThePlainFormOnDamagedStreams) {
    std::mt19937 random(7);
    for (unsigned seed = 100; seed < 160; ++seed) {
        SCOPED_TRACE(seed);
        const RandomStream made(seed, 1500);
        const Bytes good = made.wrapped(made.output());
        for (int damage = 0; damage < 25; ++damage) {
            Bytes stream = good;
            for (unsigned n = 1 + random() % 2; n > 0; --n)
                stream[random() % stream.size()] ^= static_cast<unsigned char>(1u << random() % 8);
            if (damage % 5 == 0) stream.resize(random() % stream.size());
            // With the checksum put right, damage that is valid deflate is accepted.
            const auto read = PlainInflate::run(stream, 100000);
            expect_as_plain(stream, read ? static_cast<std::uint32_t>(read->size()) : 100000u, 64);
        }
    }
}

TEST(Inflate, RefusesACutAtEveryLength) {
    const RandomStream made(3, 600);
    const Bytes good = made.wrapped(made.output());
    for (std::size_t size = 0; size < good.size(); ++size) {
        Inflater inflater;
        const ByteSpan cut(good.data(), size);
        EXPECT_FALSE(inflater.start({&cut, 1}, 1000000)) << size;
    }
}

TEST(Inflate, OneShotNeedsInput) {
    Inflater inflater;
    kelmora::ByteBuffer output(4);
    EXPECT_FALSE(inflater.inflate_bytes(nullptr, 0, output));
    EXPECT_TRUE(output.empty());
}

TEST(Inflate, ADistanceReachesBackAcrossTheWindow) {
    // 32768 bytes back at every step, over more output than any window holds.
    std::mt19937 random(5);
    Bytes stream{0x78, 0x01, 0x00, 0x00, 0x80, 0xFF, 0x7F};
    Bytes output = random_bytes(random, 32768);
    stream.insert(stream.end(), output.begin(), output.end());
    std::uint64_t bits = 0;
    unsigned count = 0;
    const auto put = [&](unsigned value, unsigned size) {
        bits |= std::uint64_t{value} << count;
        for (count += size; count >= 8; count -= 8, bits >>= 8)
            stream.push_back(static_cast<unsigned char>(bits));
    };
    put(3, 3);  // final, fixed codes
    for (int i = 0; i < 2000; ++i) {
        put(0b10100011, 8);  // symbol 285, first bit lowest: length 258
        put(0b10111, 5);     // distance code 29
        put(0x1FFF, 13);     // 32768
        for (int n = 0; n < 258; ++n) output.push_back(output[output.size() - 32768]);
    }
    put(0, 7);
    put(0, 7);
    stream.resize(stream.size() + 4);
    store_u32_big(stream.data() + stream.size() - 4, adler32_portable(output));
    ASSERT_EQ(PlainInflate::run(stream, output.size()), output);
    expect_as_plain(stream, static_cast<std::uint32_t>(output.size()), 8193);
}

// Random codes of mostly long lengths, complete or not.
Bytes random_lengths(std::mt19937& random, std::size_t symbols) {
    Bytes lengths(symbols);
    unsigned room = 1u << 15;
    const unsigned shortest = 1 + static_cast<unsigned>(random() % 15);
    for (auto& length : lengths) {
        const unsigned wanted = shortest + static_cast<unsigned>(random()) % (16 - shortest);
        if (room < 1u << (15 - wanted)) continue;
        length = static_cast<unsigned char>(wanted);
        room -= 1u << (15 - wanted);
    }
    return lengths;
}

TEST(HuffmanTable, LookupsStayWithinTheSpaceOfABlocksCodes) {
    std::mt19937 random(8);
    const std::vector<std::uint32_t> meanings(maximumSymbols, 0);
    constexpr std::uint32_t guard = 0xDEADBEEF;
    const auto check = [&](std::size_t symbols, unsigned bits, std::size_t space) {
        HuffmanTable table;
        if (!build_huffman_table(random_lengths(random, symbols), table, true)) FAIL();
        std::vector<std::uint32_t> entries(space + 40000, guard);
        build_lookup(table, meanings, bits, entries);
        EXPECT_EQ(std::count(entries.begin() + static_cast<std::ptrdiff_t>(space), entries.end(), guard),
                  40000);
    };
    for (int i = 0; i < 2000; ++i) {
        check(288, BlockCodes::literalBits, std::tuple_size_v<decltype(BlockCodes::literals)>);
        check(32, BlockCodes::distanceBits, std::tuple_size_v<decltype(BlockCodes::distances)>);
    }
}

TEST(HuffmanTable, ChecksItsLengths) {
    HuffmanTable table;
    EXPECT_FALSE(build_huffman_table(Bytes{16}, table, true));
    EXPECT_FALSE(build_huffman_table(Bytes{0, 0}, table, false));
    EXPECT_FALSE(table.valid);
    EXPECT_TRUE(build_huffman_table(Bytes{0, 0}, table, true));
    EXPECT_TRUE(table.valid);
    EXPECT_EQ(table.maximum_length, 0u);
    EXPECT_FALSE(build_huffman_table(Bytes{1, 2, 2, 15}, table, false));
    EXPECT_TRUE(build_huffman_table(Bytes{2, 0, 1}, table, false));
    EXPECT_EQ(table.counts[0], 1u);
    EXPECT_EQ(table.symbols[0], 2u);
    EXPECT_EQ(table.symbols[1], 0u);
}

}  // namespace
}  // namespace vh::png
