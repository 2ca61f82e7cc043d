#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kelmora {

// Hash of a text of fixed length that can move on by a byte without reading the text again.
class TextHash {
public:
    explicit TextHash(std::string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            value_ = value_ * multiplier + term(text[i]);
            if (i > 0) firstWeight_ *= multiplier;
        }
    }

    // Drops the first byte and takes one more. Not for an empty text.
    void roll(char dropped, char taken) {
        value_ = (value_ - term(dropped) * firstWeight_) * multiplier + term(taken);
    }
    std::uint32_t value() const { return static_cast<std::uint32_t>((value_ ^ value_ >> 32) * spread >> 32); }

private:
    static constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C55;
    static constexpr std::uint64_t spread = 0xD6E8FEB86659FD93;

    static std::uint64_t term(char byte) { return std::uint64_t{static_cast<unsigned char>(byte)} + 1; }

    std::uint64_t value_ = 0;
    std::uint64_t firstWeight_ = 1;
};

}  // namespace kelmora
