#pragma once

#include <cstddef>
#include <cstdint>

#include "codec/bit_reader.h"
#include "codec/huffman.h"

namespace vh::png {

// The bit reader of the fast loop, in registers. Its input must reach 8 bytes past `next` at each refill.
class FastBits {
public:
    explicit FastBits(const BitReader& bits)
        : next_(bits.data + bits.position), buffer_(bits.buffer), count_(bits.count) {}

    void save(BitReader& bits) const {
        bits.position = static_cast<std::size_t>(next_ - bits.data);
        bits.buffer = buffer_;
        bits.count = count_;
    }
    // At least 56 bits stand in the buffer then, and those behind them are right as well: a lookup may
    // use 63.
    void refill() {
        buffer_ |= load_u64(next_) << count_;
        next_ += (63 - count_) >> 3;
        count_ |= 56;
    }
    std::uint64_t buffer() const { return buffer_; }
    unsigned count() const { return count_; }
    const unsigned char* next() const { return next_; }
    std::size_t peek(unsigned bits) const {
        return static_cast<std::size_t>(buffer_ & ((std::uint64_t{1} << bits) - 1));
    }
    // Drops the entry's bits and returns the buffer as it was, for the extra bits among them.
    std::uint64_t drop(std::uint32_t entry) {
        const std::uint64_t before = buffer_;
        buffer_ >>= Lookup::total_bits(entry);
        count_ -= Lookup::total_bits(entry);
        return before;
    }

private:
    const unsigned char* next_;
    std::uint64_t buffer_;
    unsigned count_;
};

}  // namespace vh::png
