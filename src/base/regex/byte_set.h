#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace kelmora::regex {

// A set of byte values.
class ByteSet {
public:
    bool contains(unsigned byte) const { return ((words_[byte >> 6] >> (byte & 63)) & 1) != 0; }
    void add(unsigned byte) { words_[byte >> 6] |= std::uint64_t{1} << (byte & 63); }
    void addRange(unsigned first, unsigned last) {
        for (unsigned byte = first; byte <= last; ++byte) add(byte);
    }
    void invert() {
        for (auto& word : words_) word = ~word;
    }
    ByteSet inverted() const {
        ByteSet result = *this;
        result.invert();
        return result;
    }
    ByteSet& operator|=(const ByteSet& other) {
        for (std::size_t i = 0; i < words_.size(); ++i) words_[i] |= other.words_[i];
        return *this;
    }
    bool intersects(const ByteSet& other) const {
        for (std::size_t i = 0; i < words_.size(); ++i)
            if ((words_[i] & other.words_[i]) != 0) return true;
        return false;
    }
    unsigned size() const {
        int count = 0;
        for (const auto word : words_) count += std::popcount(word);
        return static_cast<unsigned>(count);
    }
    // The smallest member that is at least `byte`; 256 when there is none.
    unsigned next(unsigned byte) const {
        while (byte < 256 && !contains(byte)) ++byte;
        return byte;
    }
    std::size_t hash() const {
        std::uint64_t value = 0;
        for (const auto word : words_) value = (std::rotl(value, 23) ^ word) * 0x9E37'79B9'7F4A'7C15u;
        return static_cast<std::size_t>(value >> 32);
    }

    friend bool operator==(const ByteSet&, const ByteSet&) = default;

private:
    std::array<std::uint64_t, 4> words_{};
};

}  // namespace kelmora::regex
