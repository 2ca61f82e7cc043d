#include "codec/deflate.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace vh::png {
namespace {

constexpr std::size_t window = 32768;
constexpr std::size_t blockSize = 60000;  // a stored block holds 65535 bytes
constexpr std::size_t leastMatch = 3;
constexpr std::size_t longestMatch = 258;
constexpr int mostTries = 48;
constexpr std::uint32_t hashSize = 1u << 15;

constexpr std::array<std::uint16_t, 29> lengthBases{3,  4,  5,  6,   7,   8,   9,   10,  11, 13,
                                                    15, 17, 19, 23,  27,  31,  35,  43,  51, 59,
                                                    67, 83, 99, 115, 131, 163, 195, 227, 258};
constexpr std::array<std::uint8_t, 29> lengthBits{0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                                  2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr std::array<std::uint16_t, 30> distanceBases{
    1,   2,   3,   4,   5,   7,    9,    13,   17,   25,   33,   49,   65,    97,    129,
    193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
constexpr std::array<std::uint8_t, 30> distanceBits{0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                                    6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

class BitWriter {
public:
    // The lowest bits of `value` first.
    void bits(std::uint32_t value, int count) {
        held_ |= std::uint64_t{value} << heldBits_;
        for (heldBits_ += count; heldBits_ >= 8; heldBits_ -= 8, held_ >>= 8)
            bytes_.push_back(static_cast<unsigned char>(held_));
    }
    // A code, whose highest bit comes first.
    void code(std::uint32_t value, int count) {
        std::uint32_t turned = 0;
        for (int i = 0; i < count; ++i) turned |= (value >> i & 1) << (count - 1 - i);
        bits(turned, count);
    }
    void alignToByte() {
        if (heldBits_ > 0) bits(0, 8 - heldBits_);
    }
    std::vector<unsigned char> take() { return std::move(bytes_); }

private:
    std::vector<unsigned char> bytes_;
    std::uint64_t held_ = 0;
    int heldBits_ = 0;
};

struct Piece {
    std::uint16_t length;    // 1 for a byte by itself
    std::uint16_t distance;  // or the byte
};

int symbolBits(std::uint32_t symbol) {
    return symbol < 144 ? 8 : symbol < 256 ? 9 : symbol < 280 ? 7 : 8;
}

void writeSymbol(BitWriter& out, std::uint32_t symbol) {
    if (symbol < 144)
        out.code(0x30 + symbol, 8);
    else if (symbol < 256)
        out.code(0x190 + symbol - 144, 9);
    else if (symbol < 280)
        out.code(symbol - 256, 7);
    else
        out.code(0xC0 + symbol - 280, 8);
}

std::size_t baseIndex(std::span<const std::uint16_t> bases, std::uint32_t value) {
    return static_cast<std::size_t>(std::upper_bound(bases.begin(), bases.end(), value) - bases.begin()) - 1;
}

// Finds earlier places with the same three bytes, the nearest first.
class Matcher {
public:
    explicit Matcher(std::span<const unsigned char> bytes) : bytes_(bytes), previous_(window) {
        heads_.fill(-1);
    }

    Piece next(std::size_t at, std::size_t end) const {
        Piece best{1, bytes_[at]};
        if (at + leastMatch > end) return best;
        std::int64_t place = heads_[hashAt(at)];
        const std::size_t most = std::min(longestMatch, end - at);
        for (int tries = 0; tries < mostTries && place >= 0; ++tries) {
            const auto start = static_cast<std::size_t>(place);
            if (at - start > window) break;
            std::size_t length = 0;
            while (length < most && bytes_[start + length] == bytes_[at + length]) ++length;
            if (length >= leastMatch && length > best.length)
                best = {static_cast<std::uint16_t>(length), static_cast<std::uint16_t>(at - start)};
            if (length == most) break;
            const std::int64_t before = previous_[start % window];
            if (before >= place) break;
            place = before;
        }
        return best;
    }
    void add(std::size_t at) {
        if (at + leastMatch > bytes_.size()) return;
        std::int64_t& head = heads_[hashAt(at)];
        previous_[at % window] = head;
        head = static_cast<std::int64_t>(at);
    }

private:
    std::uint32_t hashAt(std::size_t at) const {
        const std::uint32_t three =
            bytes_[at] | std::uint32_t{bytes_[at + 1]} << 8 | std::uint32_t{bytes_[at + 2]} << 16;
        return three * 2654435761u >> 17 & (hashSize - 1);
    }

    std::span<const unsigned char> bytes_;
    std::vector<std::int64_t> previous_;
    std::array<std::int64_t, hashSize> heads_{};
};

std::size_t bitsOf(const Piece& piece) {
    if (piece.length == 1) return static_cast<std::size_t>(symbolBits(piece.distance));
    const std::size_t length = baseIndex(lengthBases, piece.length);
    return static_cast<std::size_t>(symbolBits(static_cast<std::uint32_t>(257 + length))) +
           lengthBits[length] + 5 + distanceBits[baseIndex(distanceBases, piece.distance)];
}

void writePiece(BitWriter& out, const Piece& piece) {
    if (piece.length == 1) return writeSymbol(out, piece.distance);
    const std::size_t length = baseIndex(lengthBases, piece.length);
    writeSymbol(out, static_cast<std::uint32_t>(257 + length));
    out.bits(std::uint32_t{piece.length} - lengthBases[length], lengthBits[length]);
    const std::size_t distance = baseIndex(distanceBases, piece.distance);
    out.code(static_cast<std::uint32_t>(distance), 5);
    out.bits(std::uint32_t{piece.distance} - distanceBases[distance], distanceBits[distance]);
}

void writeStored(BitWriter& out, std::span<const unsigned char> bytes, bool isLast) {
    out.bits(isLast ? 1 : 0, 3);
    out.alignToByte();
    const auto size = static_cast<std::uint32_t>(bytes.size());
    out.bits(size, 16);
    out.bits(~size & 0xFFFFu, 16);
    for (const unsigned char byte : bytes) out.bits(byte, 8);
}

}  // namespace

std::vector<unsigned char> deflate(std::span<const unsigned char> bytes) {
    BitWriter out;
    const auto matcher = std::make_unique<Matcher>(bytes);
    std::vector<Piece> pieces;
    std::size_t start = 0;
    do {
        const std::size_t end = std::min(start + blockSize, bytes.size());
        pieces.clear();
        std::size_t bits = 10;
        for (std::size_t at = start; at < end;) {
            pieces.push_back(matcher->next(at, end));
            bits += bitsOf(pieces.back());
            for (std::size_t i = 0; i < pieces.back().length; ++i) matcher->add(at++);
        }
        const bool isLast = end == bytes.size();
        if (bits > (end - start + 5) * 8) {
            writeStored(out, bytes.subspan(start, end - start), isLast);
        } else {
            out.bits(isLast ? 3 : 2, 3);
            for (const Piece& piece : pieces) writePiece(out, piece);
            writeSymbol(out, 256);
        }
        start = end;
    } while (start < bytes.size());
    out.alignToByte();
    return out.take();
}

}  // namespace vh::png
