#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "codec/huffman.h"

namespace vh::png {

constexpr std::size_t distanceSymbols = 32;
constexpr std::size_t longestMatch = 258;

// The two codes of a compressed block, ready for lookup.
struct BlockCodes {
    static constexpr unsigned literalBits = 11;
    static constexpr unsigned distanceBits = 8;
    // Canonical codes leave gaps only behind the last code, so every subtable but one is full: a literal
    // subtable of 16 entries has at least 5 of the 288 symbols, a distance subtable of 128 at least 8 of
    // the 32.
    std::array<std::uint32_t, (1u << literalBits) + 1024> literals;
    std::array<std::uint32_t, (1u << distanceBits) + 640> distances;
};

// False for lengths that make no code.
[[nodiscard]] bool build_block_codes(std::span<const std::uint8_t> literals,
                                     std::span<const std::uint8_t> distances, BlockCodes& codes);

// The codes of blocks that bring none of their own.
const BlockCodes& fixed_codes();

// The code that a block's code lengths are written in; its values are the symbols themselves.
struct LengthCode {
    static constexpr std::size_t symbols = 19;
    static constexpr unsigned bits = 7;
    std::array<std::uint32_t, std::size_t{1} << bits> entries;
};

[[nodiscard]] bool build_length_code(std::span<const std::uint8_t> lengths, LengthCode& code);

}  // namespace vh::png
