#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace kelmora {

// Reads a block of bytes front to back and never past its end. A read that does not fit fails, changes
// nothing and leaves the reader where it was. The bytes are borrowed.
class ByteReader {
public:
    explicit ByteReader(std::span<const unsigned char> bytes) : bytes_(bytes) {}

    std::size_t position() const { return position_; }
    std::size_t remaining() const { return bytes_.size() - position_; }
    bool atEnd() const { return remaining() == 0; }

    [[nodiscard]] bool seek(std::size_t position) {
        if (position > bytes_.size()) return false;
        position_ = position;
        return true;
    }
    [[nodiscard]] bool skip(std::size_t count) {
        if (count > remaining()) return false;
        position_ += count;
        return true;
    }
    [[nodiscard]] bool readBytes(std::size_t count, std::span<const unsigned char>& out) {
        if (count > remaining()) return false;
        out = bytes_.subspan(position_, count);
        position_ += count;
        return true;
    }
    [[nodiscard]] bool readText(std::size_t count, std::string_view& out) {
        std::span<const unsigned char> bytes;
        if (!readBytes(count, bytes)) return false;
        out = {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
        return true;
    }

    [[nodiscard]] bool readU8(std::uint8_t& out) { return readLittle(out); }
    [[nodiscard]] bool readU16(std::uint16_t& out) { return readLittle(out); }
    [[nodiscard]] bool readU32(std::uint32_t& out) { return readLittle(out); }
    [[nodiscard]] bool readU64(std::uint64_t& out) { return readLittle(out); }
    [[nodiscard]] bool readU16Big(std::uint16_t& out) { return readBig(out); }
    [[nodiscard]] bool readU32Big(std::uint32_t& out) { return readBig(out); }

private:
    template <typename T>
    bool readLittle(T& out) {
        if (sizeof(T) > remaining()) return false;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i) value |= std::uint64_t{bytes_[position_ + i]} << (8 * i);
        out = static_cast<T>(value);
        position_ += sizeof(T);
        return true;
    }
    template <typename T>
    bool readBig(T& out) {
        if (sizeof(T) > remaining()) return false;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i) value = (value << 8) | bytes_[position_ + i];
        out = static_cast<T>(value);
        position_ += sizeof(T);
        return true;
    }

    std::span<const unsigned char> bytes_;
    std::size_t position_ = 0;
};

}  // namespace kelmora
