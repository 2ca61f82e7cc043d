#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "codec/load_store.h"

namespace vh::png {

// Takes bits from a block of bytes, the least significant first. Bits of `buffer` above `count` are either
// zero or equal to the input that follows, so that a refill may set them again.
struct BitReader {
    const unsigned char* data = nullptr;
    std::size_t length = 0;
    std::size_t position = 0;  // of the first byte not yet in the buffer
    std::uint64_t buffer = 0;
    unsigned count = 0;

    BitReader() = default;
    explicit BitReader(std::span<const unsigned char> bytes) : data(bytes.data()), length(bytes.size()) {}

    // Leaves at least 56 bits in the buffer, or all that the input has left.
    void refill() {
        if (length - position >= sizeof(std::uint64_t)) {
            buffer |= load_u64(data + position) << count;
            position += (63 - count) >> 3;
            count |= 56;
            return;
        }
        for (; count <= 56 && position < length; ++position, count += 8)
            buffer |= std::uint64_t{data[position]} << count;
    }

    std::uint32_t peek(unsigned bits) const {
        return static_cast<std::uint32_t>(buffer & ((std::uint64_t{1} << bits) - 1));
    }
    [[nodiscard]] bool drop(unsigned bits) {
        if (bits > count) return false;
        buffer >>= bits;
        count -= bits;
        return true;
    }
    // Up to 32 bits.
    [[nodiscard]] bool take(unsigned bits, std::uint32_t& value) {
        if (count < bits) refill();
        value = peek(bits);
        return drop(bits);
    }

    // Drops the rest of a byte begun and gives whole bytes back, so that `position` is the next one unread.
    void align_to_byte() {
        position -= count / 8;
        buffer = 0;
        count = 0;
    }
};

}  // namespace vh::png
