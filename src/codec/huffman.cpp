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

class LookupBuilder {
public:
    LookupBuilder(const HuffmanTable& table, std::span<const std::uint32_t> meanings, unsigned first_bits,
                  std::span<std::uint32_t> entries)
        : table_(table),
          meanings_(meanings),
          first_bits_(first_bits),
          entries_(entries),
          left_(table.counts) {}

    // The table for codes of up to `length` bits is that for one bit less, twice, and the codes of that
    // length.
    void fill_first_level() {
        entries_[0] = Lookup::exceptional;
        std::size_t size = 1;
        for (unsigned length = 1; length <= first_bits_; ++length, size *= 2) {
            std::copy_n(entries_.begin(), size, entries_.begin() + static_cast<std::ptrdiff_t>(size));
            for (; left_[length] > 0; next(length)) entries_[code_.bits] = entry(length);
        }
    }

    void fill_subtables() {
        const std::size_t first_size = std::size_t{1} << first_bits_;
        std::size_t end = first_size;
        std::size_t prefix = first_size;  // none yet
        std::span<std::uint32_t> subtable;
        for (unsigned length = first_bits_ + 1; length <= table_.maximum_length; ++length) {
            for (; left_[length] > 0; next(length)) {
                if ((code_.bits & (first_size - 1)) != prefix) {
                    prefix = code_.bits & (first_size - 1);
                    subtable = open_subtable(prefix, end, length);
                    end += subtable.size();
                }
                const std::size_t step = std::size_t{1} << (length - first_bits_);
                for (std::size_t i = code_.bits >> first_bits_; i < subtable.size(); i += step)
                    subtable[i] = entry(length - first_bits_);
            }
        }
    }

private:
    std::uint32_t entry(unsigned bits) const {
        return Lookup::with_code(meanings_[table_.symbols[index_]], bits);
    }
    void next(unsigned length) {
        --left_[length];
        ++index_;
        code_.advance(length);
    }

    std::span<std::uint32_t> open_subtable(std::size_t prefix, std::size_t place, unsigned length) {
        const unsigned bits = subtable_bits(length);
        const auto subtable = entries_.subspan(place, std::size_t{1} << bits);
        std::fill(subtable.begin(), subtable.end(), Lookup::exceptional);
        entries_[prefix] = static_cast<std::uint32_t>(place << 16) | Lookup::exceptional | Lookup::subtable |
                           bits << 8 | first_bits_;
        return subtable;
    }
    // Bits that a subtable needs which opens with a code of `length`: it grows until the codes to come fill
    // it.
    unsigned subtable_bits(unsigned length) const {
        unsigned bits = length - first_bits_;
        std::int32_t room = std::int32_t{1} << bits;
        for (; first_bits_ + bits < table_.maximum_length; ++bits) {
            room -= left_[first_bits_ + bits];
            if (room <= 0) break;
            room <<= 1;
        }
        return bits;
    }

    const HuffmanTable& table_;
    std::span<const std::uint32_t> meanings_;
    unsigned first_bits_;
    std::span<std::uint32_t> entries_;
    std::array<std::uint16_t, maximumCodeLength + 1> left_;  // codes of each length not yet placed
    std::size_t index_ = 0;                                  // of the next symbol
    ReversedCode code_;                                      // its code
};

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
    LookupBuilder builder(table, meanings, first_bits, entries);
    builder.fill_first_level();
    builder.fill_subtables();
}

void pair_literals(unsigned first_bits, std::span<std::uint32_t> entries) {
    // From the top, since an entry looks for its second literal below itself, or for the lowest at itself.
    for (std::size_t i = std::size_t{1} << first_bits; i-- > 0;) {
        const std::uint32_t first = entries[i];
        const unsigned bits = Lookup::total_bits(first);
        const std::uint32_t second = entries[i >> bits];
        const bool fits =
            (first & second & Lookup::literal) != 0 && bits + Lookup::total_bits(second) <= first_bits;
        const std::uint32_t joined = Lookup::value(second) << 24 | Lookup::total_bits(second) | Lookup::pair;
        entries[i] = fits ? first + joined : first;
    }
}

}  // namespace vh::png
