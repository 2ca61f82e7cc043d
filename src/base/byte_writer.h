#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace kelmora {

// Gathers a file front to back, numbers little-endian.
class ByteWriter {
public:
    void reserve(std::size_t size) { bytes_.reserve(size); }
    std::size_t size() const { return bytes_.size(); }

    void u8(std::uint8_t value) { bytes_.push_back(value); }
    void u16(std::uint16_t value) { little(value); }
    void u32(std::uint32_t value) { little(value); }
    void u64(std::uint64_t value) { little(value); }
    void i32(std::int32_t value) { little(static_cast<std::uint32_t>(value)); }

    void bytes(std::span<const unsigned char> block) {
        bytes_.insert(bytes_.end(), block.begin(), block.end());
    }
    // The bytes alone, and behind their count in 32 bits.
    void text(std::string_view letters) { bytes_.insert(bytes_.end(), letters.begin(), letters.end()); }
    void countedText(std::string_view letters) {
        u32(static_cast<std::uint32_t>(letters.size()));
        text(letters);
    }

    // Room for `count` bytes that the caller fills in before it writes on.
    std::span<unsigned char> room(std::size_t count) {
        bytes_.resize(bytes_.size() + count);
        return std::span(bytes_).last(count);
    }
    std::vector<unsigned char> take() { return std::move(bytes_); }

private:
    template <typename T>
    void little(T value) {
        for (unsigned i = 0; i < sizeof value; ++i)
            bytes_.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }

    std::vector<unsigned char> bytes_;
};

}  // namespace kelmora
