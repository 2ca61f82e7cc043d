#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "codec/bit_reader.h"

namespace vh::png {

constexpr unsigned maximumCodeLength = 15;
constexpr std::size_t maximumSymbols = 288;

// A canonical code: symbols in the order of their codes. It may leave bit patterns without a symbol.
struct HuffmanTable {
    std::array<std::uint16_t, maximumCodeLength + 1> counts{};  // codes of each length; [0] unused symbols
    std::array<std::uint16_t, maximumSymbols> symbols{};
    unsigned maximum_length = 0;
    bool valid = false;
};

// False for a length above 15, for lengths that promise more codes than there are, and for a code without
// any symbol unless `allow_empty`.
[[nodiscard]] bool build_huffman_table(std::span<const std::uint8_t> lengths, HuffmanTable& table,
                                       bool allow_empty);

// Decodes one symbol bit by bit: the plain form of what the lookup tables do.
[[nodiscard]] bool decode_symbol(const HuffmanTable& table, BitReader& bits, std::uint16_t& symbol);

// What a lookup finds for the next bits of input. From the low end: 6 bits, the number of bits to drop (code
// and extra bits); flags; 5 bits, those of the first code alone; flags; from bit 16 the value: one or two
// literal bytes, a base length or distance, or where a subtable starts. A subtable's entries count only the
// bits behind the first lookup.
struct Lookup {
    static constexpr std::uint32_t pair = 1u << 6;  // two literals, the first one lowest
    static constexpr std::uint32_t literal = 1u << 7;
    static constexpr std::uint32_t endOfBlock = 1u << 13;
    static constexpr std::uint32_t subtable = 1u << 14;
    static constexpr std::uint32_t exceptional = 1u << 15;  // end, subtable, or neither: no such code

    static constexpr unsigned total_bits(std::uint32_t entry) { return entry & 0x3F; }
    static constexpr unsigned code_bits(std::uint32_t entry) { return (entry >> 8) & 0x1F; }
    static constexpr std::uint32_t value(std::uint32_t entry) { return entry >> 16; }
    static constexpr unsigned literal_count(std::uint32_t entry) { return 1 + ((entry >> 6) & 1); }
    // The entry of a symbol, given what the symbol means (value, flags, number of extra bits).
    static constexpr std::uint32_t with_code(std::uint32_t meaning, unsigned length) {
        return meaning + (length << 8) + length;
    }
};

// Fills `entries` so that the next `first_bits` bits of input index either a symbol's entry or a link to a
// subtable behind the first 2^first_bits entries. `meanings` holds an entry for each symbol, without its
// code's length. Patterns that no code begins with become "no such code". `entries` must hold the first level
// plus, for each group of codes that share their first bits, 2^(longest - first_bits) entries.
void build_lookup(const HuffmanTable& table, std::span<const std::uint32_t> meanings, unsigned first_bits,
                  std::span<std::uint32_t> entries);

// Joins literals in the first 2^first_bits entries with the literal that follows, where both codes fit.
void pair_literals(unsigned first_bits, std::span<std::uint32_t> entries);

}  // namespace vh::png
