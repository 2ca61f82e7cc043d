#include "codec/huffman.h"

#include <algorithm>

namespace vh::png {
namespace {

// Codes arrive with their first bit lowest, so that counting up works on the reversed code.
struct ReversedCode {
    std::uint32_t bits = 0;

    void advance(unsigned length) {
        std::uint32_t bit = std::uint32_t{1} << (length - 1);
        for (; bit != 0 && (bits & bit) != 0; bit >>= 1) bits ^= bit;
        bits |= bit;
    }
};

void store_strided(std::span<std::uint32_t> entries, std::size_t first, std::size_t step,
                   std::uint32_t entry) {
    for (std::size_t i = first; i < entries.size(); i += step) entries[i] = entry;
}

// Bits that a subtable needs which opens with a code of `length`: it grows until the codes to come fill it.
unsigned subtable_bits(const std::array<std::uint16_t, maximumCodeLength + 1>& left, unsigned length,
                       unsigned first_bits, unsigned maximum_length) {
    unsigned bits = length - first_bits;
    std::int32_t room = std::int32_t{1} << bits;
    for (; first_bits + bits < maximum_length; ++bits) {
        room -= left[first_bits + bits];
        if (room <= 0) break;
        room <<= 1;
    }
    return bits;
}

}  // namespace

bool build_huffman_table(std::span<const std::uint8_t> lengths, HuffmanTable& table, bool allow_empty) {
    table.counts.fill(0);
    table.maximum_length = 0;
    table.valid = false;
    for (const std::uint8_t length : lengths) {
        if (length > maximumCodeLength) return false;
        ++table.counts[length];
    }
    if (table.counts[0] == lengths.size()) return table.valid = allow_empty;

    std::array<std::uint16_t, maximumCodeLength + 2> first{};
    std::int32_t left = 1;
    for (unsigned length = 1; length <= maximumCodeLength; ++length) {
        left = 2 * left - table.counts[length];
        if (left < 0) return false;
        if (table.counts[length] != 0) table.maximum_length = length;
        first[length + 1] = static_cast<std::uint16_t>(first[length] + table.counts[length]);
    }
    for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
        if (lengths[symbol] != 0)
            table.symbols[first[lengths[symbol]]++] = static_cast<std::uint16_t>(symbol);
    }
    return table.valid = true;
}

bool decode_symbol(const HuffmanTable& table, BitReader& bits, std::uint16_t& symbol) {
    if (!table.valid) return false;
    std::uint32_t code = 0;
    std::uint32_t first = 0;
    std::size_t index = 0;
    for (unsigned length = 1; length <= table.maximum_length; ++length) {
        std::uint32_t bit = 0;
        if (!bits.take(1, bit)) return false;
        code |= bit;
        const std::uint32_t count = table.counts[length];
        if (code - first < count) {
            symbol = table.symbols[index + (code - first)];
            return true;
        }
        index += count;
        first = (first + count) << 1;
        code <<= 1;
    }
    return false;
}

void build_lookup(const HuffmanTable& table, std::span<const std::uint32_t> meanings, unsigned first_bits,
                  std::span<std::uint32_t> entries) {
    const std::size_t first_size = std::size_t{1} << first_bits;
    const std::uint32_t no_such_code = Lookup::exceptional;
    std::fill_n(entries.begin(), first_size, no_such_code);

    ReversedCode code;
    std::size_t index = 0;
    const unsigned direct = std::min(first_bits, table.maximum_length);
    for (unsigned length = 1; length <= direct; ++length) {
        for (unsigned n = table.counts[length]; n > 0; --n, ++index, code.advance(length)) {
            store_strided(entries.first(first_size), code.bits, std::size_t{1} << length,
                          Lookup::with_code(meanings[table.symbols[index]], length));
        }
    }

    auto left = table.counts;
    std::size_t end = first_size;
    std::size_t prefix = first_size;  // none yet
    std::span<std::uint32_t> subtable;
    for (unsigned length = first_bits + 1; length <= table.maximum_length; ++length) {
        for (; left[length] > 0; --left[length], ++index, code.advance(length)) {
            if ((code.bits & (first_size - 1)) != prefix) {
                prefix = code.bits & (first_size - 1);
                const unsigned bits = subtable_bits(left, length, first_bits, table.maximum_length);
                subtable = entries.subspan(end, std::size_t{1} << bits);
                std::fill(subtable.begin(), subtable.end(), no_such_code);
                entries[prefix] = static_cast<std::uint32_t>(end << 16) | Lookup::exceptional |
                                  Lookup::subtable | bits << 8 | first_bits;
                end += subtable.size();
            }
            store_strided(subtable, code.bits >> first_bits, std::size_t{1} << (length - first_bits),
                          Lookup::with_code(meanings[table.symbols[index]], length - first_bits));
        }
    }
}

}  // namespace vh::png
