#include "codec/block_codes.h"

#include <algorithm>

namespace vh::png {
namespace {

constexpr std::uint32_t meaning(std::uint32_t value, std::uint32_t extra_bits) {
    return value << 16 | extra_bits;
}

constexpr auto make_literal_meanings() {
    std::array<std::uint32_t, maximumSymbols> meanings{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) meanings[byte] = meaning(byte, 0) | Lookup::literal;
    meanings[256] = Lookup::exceptional | Lookup::endOfBlock;
    std::uint32_t length = 3;
    for (std::uint32_t symbol = 257; symbol < 285; ++symbol) {
        const std::uint32_t extra_bits = symbol < 265 ? 0 : (symbol - 261) / 4;
        meanings[symbol] = meaning(length, extra_bits);
        length += 1u << extra_bits;
    }
    meanings[285] = meaning(longestMatch, 0);
    meanings[286] = meanings[287] = Lookup::exceptional;
    return meanings;
}

constexpr auto make_distance_meanings() {
    std::array<std::uint32_t, distanceSymbols> meanings{};
    std::uint32_t distance = 1;
    for (std::uint32_t symbol = 0; symbol < 30; ++symbol) {
        const std::uint32_t extra_bits = symbol < 4 ? 0 : symbol / 2 - 1;
        meanings[symbol] = meaning(distance, extra_bits);
        distance += 1u << extra_bits;
    }
    meanings[30] = meanings[31] = Lookup::exceptional;
    return meanings;
}

constexpr auto make_length_code_meanings() {
    std::array<std::uint32_t, LengthCode::symbols> meanings{};
    for (std::uint32_t symbol = 0; symbol < LengthCode::symbols; ++symbol)
        meanings[symbol] = meaning(symbol, 0);
    return meanings;
}

constexpr auto literalMeanings = make_literal_meanings();
constexpr auto distanceMeanings = make_distance_meanings();
constexpr auto lengthCodeMeanings = make_length_code_meanings();

BlockCodes make_fixed_codes() {
    std::array<std::uint8_t, maximumSymbols> literals{};
    std::fill(literals.begin(), literals.begin() + 144, std::uint8_t{8});
    std::fill(literals.begin() + 144, literals.begin() + 256, std::uint8_t{9});
    std::fill(literals.begin() + 256, literals.begin() + 280, std::uint8_t{7});
    std::fill(literals.begin() + 280, literals.end(), std::uint8_t{8});
    std::array<std::uint8_t, distanceSymbols> distances{};
    distances.fill(5);
    BlockCodes codes;
    [[maybe_unused]] const bool built = build_block_codes(literals, distances, codes);
    return codes;
}

}  // namespace

bool build_block_codes(std::span<const std::uint8_t> literals, std::span<const std::uint8_t> distances,
                       BlockCodes& codes) {
    HuffmanTable table;
    if (!build_huffman_table(literals, table, false)) return false;
    build_lookup(table, literalMeanings, BlockCodes::literalBits, codes.literals);
    pair_literals(BlockCodes::literalBits, codes.literals);
    if (!build_huffman_table(distances, table, true)) return false;
    build_lookup(table, distanceMeanings, BlockCodes::distanceBits, codes.distances);
    return true;
}

const BlockCodes& fixed_codes() {
    static const BlockCodes codes = make_fixed_codes();
    return codes;
}

bool build_length_code(std::span<const std::uint8_t> lengths, LengthCode& code) {
    HuffmanTable table;
    if (!build_huffman_table(lengths, table, false)) return false;
    build_lookup(table, lengthCodeMeanings, LengthCode::bits, code.entries);
    return true;
}

}  // namespace vh::png
