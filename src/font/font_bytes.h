#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kelmora {

// Big-endian reads at any place of a font file. The bytes are borrowed.
class FontBytes {
public:
    FontBytes() = default;
    explicit FontBytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::size_t size() const { return bytes_.size(); }
    bool has(std::size_t at, std::size_t count) const {
        return at <= bytes_.size() && count <= bytes_.size() - at;
    }
    std::size_t remaining(std::size_t at) const { return at <= bytes_.size() ? bytes_.size() - at : 0; }
    std::span<const std::uint8_t> from(std::size_t at) const {
        return at <= bytes_.size() ? bytes_.subspan(at) : std::span<const std::uint8_t>();
    }

    // Only where `has` said so.
    std::uint16_t u16(std::size_t at) const {
        return static_cast<std::uint16_t>(bytes_[at] << 8 | bytes_[at + 1]);
    }
    std::int16_t i16(std::size_t at) const { return static_cast<std::int16_t>(u16(at)); }
    std::uint32_t u32(std::size_t at) const { return std::uint32_t{u16(at)} << 16 | u16(at + 2); }

    std::optional<std::uint16_t> tryU16(std::size_t at) const {
        return has(at, 2) ? std::optional(u16(at)) : std::nullopt;
    }

private:
    std::span<const std::uint8_t> bytes_;
};

}  // namespace kelmora
