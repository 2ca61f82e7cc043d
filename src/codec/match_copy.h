#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "codec/load_store.h"

namespace vh::png {

// Bytes that copy_match_wide may write behind the match.
constexpr std::size_t matchOverrun = 16;

// Repeats `length` bytes that stand `distance` before `out`, in whole words.
inline void copy_match_wide(unsigned char* out, std::size_t distance, std::size_t length) {
    const unsigned char* const end = out + length;
    const unsigned char* from = out - distance;
    if (distance >= 16) {
        do {
            std::memcpy(out, from, 16);
            out += 16;
            from += 16;
        } while (out < end);
        return;
    }
    if (distance >= 8) {
        do {
            std::memcpy(out, from, 8);
            out += 8;
            from += 8;
        } while (out < end);
        return;
    }
    // A word of the repeated pattern, stored at steps that keep its phase.
    const unsigned bits = static_cast<unsigned>(8 * distance);
    std::uint64_t pattern = load_u64(from) & ((std::uint64_t{1} << bits) - 1);
    pattern |= pattern << bits;
    if (distance < 4) pattern |= pattern << (2 * bits);
    if (distance < 2) pattern |= pattern << 32;
    static constexpr unsigned char steps[8] = {0, 8, 8, 6, 8, 5, 6, 7};
    const std::size_t step = steps[distance];
    do {
        store_u64(out, pattern);
        out += step;
    } while (out < end);
}

}  // namespace vh::png
