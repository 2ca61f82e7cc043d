#include "codec/tga_read.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "codec/load_store.h"
#include "codec/pixel_limit.h"
#include "codec/swap_red_blue.h"

namespace vh::png {
namespace {

constexpr std::size_t headerSize = 18;
constexpr std::size_t footerSize = 26;
constexpr std::string_view footerMark{"TRUEVISION-XFILE.\0", 18};
constexpr std::size_t longestPacket = 128;

enum Kind : unsigned { Mapped = 1, TrueColour = 2, GreyScale = 3 };

struct TgaHeader {
    unsigned id_length;
    unsigned map_type;
    unsigned image_type;
    unsigned first_index;
    unsigned map_length;
    unsigned entry_bits;
    unsigned width;
    unsigned height;
    unsigned bits;
    unsigned descriptor;

    unsigned kind() const { return image_type >= 8 ? image_type - 8 : image_type; }
    bool run_length() const { return image_type >= 8; }
    unsigned alpha_bits() const { return descriptor & 0x0F; }
    bool right_to_left() const { return (descriptor & 0x10) != 0; }
    bool top_down() const { return (descriptor & 0x20) != 0; }
    std::size_t pixel_size() const { return (bits + 7) / 8; }
    std::size_t map_size() const { return std::size_t{(entry_bits + 7) / 8} * map_length; }
};

unsigned u16_at(const unsigned char* place) {
    return place[0] | unsigned{place[1]} << 8;
}

TgaHeader read_header(const unsigned char* data) {
    return {data[0], data[1],           data[2],           u16_at(data + 3), u16_at(data + 5),
            data[7], u16_at(data + 12), u16_at(data + 14), data[16],         data[17]};
}

bool is_one_of(unsigned value, std::initializer_list<unsigned> choices) {
    return std::find(choices.begin(), choices.end(), value) != choices.end();
}

bool bits_suit_kind(const TgaHeader& header) {
    switch (header.kind()) {
        case Mapped:
            return is_one_of(header.bits, {8, 16});
        case TrueColour:
            return is_one_of(header.bits, {15, 16, 24, 32});
        default:
            return is_one_of(header.bits, {8, 16});
    }
}

bool makes_sense(const TgaHeader& header, std::size_t file_size) {
    if (header.map_type > 1 || header.width == 0 || header.height == 0) return false;
    if (!is_one_of(header.image_type, {1, 2, 3, 9, 10, 11})) return false;
    if (header.map_type == 0 && header.map_length != 0) return false;
    if (header.map_type == 1 && (header.map_length == 0 || !is_one_of(header.entry_bits, {15, 16, 24, 32})))
        return false;
    if (!bits_suit_kind(header)) return false;
    const std::size_t map = header.map_type == 1 ? header.map_size() : 0;
    return headerSize + header.id_length + map < file_size;
}

using Pixel = std::array<unsigned char, rgbaSize>;

unsigned char widen5(unsigned value) {
    return static_cast<unsigned char>((value & 31) * 255 / 31);
}

Pixel opaque_from_555(unsigned value) {
    return {widen5(value >> 10), widen5(value >> 5), widen5(value), 255};
}

bool read_map_entry(unsigned bits, const unsigned char* from, Pixel& entry) {
    switch (bits) {
        case 8:
            entry = {from[0], from[0], from[0], 255};
            return true;
        case 15:
        case 16:
            entry = opaque_from_555(u16_at(from));
            return true;
        case 24:
            entry = {from[2], from[1], from[0], 255};
            return true;
        case 32:
            entry = {from[2], from[1], from[0], from[3]};
            return true;
        default:
            return false;
    }
}

// Turns stored pixels into RGBA.
class Unpacker {
public:
    // False for a depth that the header's kind has no reading for.
    bool choose(const TgaHeader& header) {
        header_ = header;
        switch (header.kind()) {
            case Mapped:
                return is_one_of(header.bits, {8, 16});
            case TrueColour:
                return is_one_of(header.bits, {8, 15, 16, 24, 32});
            case GreyScale:
                return header.bits != 0;
            default:
                return false;
        }
    }
    bool read_map(ByteSpan bytes) {
        Pixel entry{};
        const std::size_t size = (header_.entry_bits + 7) / 8;
        if (!is_one_of(header_.entry_bits, {8, 15, 16, 24, 32})) return false;
        map_.reserve(header_.map_length);
        for (std::size_t i = 0; i < header_.map_length; ++i) {
            if (!read_map_entry(header_.entry_bits, bytes.data() + i * size, entry)) return false;
            map_.push_back(entry);
        }
        return true;
    }
    bool unpack(const unsigned char* from, std::size_t count, unsigned char* to) const {
        switch (header_.kind()) {
            case Mapped:
                return unpack_mapped(from, count, to);
            case TrueColour:
                unpack_colour(from, count, to);
                return true;
            default:
                unpack_grey(from, count, to);
                return true;
        }
    }

private:
    template <typename Read>
    static void each(const unsigned char* from, std::size_t step, std::size_t count, unsigned char* to,
                     Read read) {
        for (std::size_t i = 0; i < count; ++i, from += step, to += rgbaSize) {
            const Pixel pixel = read(from);
            std::copy(pixel.begin(), pixel.end(), to);
        }
    }
    void unpack_grey(const unsigned char* from, std::size_t count, unsigned char* to) const {
        const std::size_t step = header_.pixel_size();
        if (header_.bits == 16)
            each(from, step, count, to, [](auto* at) { return Pixel{at[0], at[0], at[0], at[1]}; });
        else
            each(from, step, count, to, [](auto* at) { return Pixel{at[0], at[0], at[0], 255}; });
    }
    void unpack_colour(const unsigned char* from, std::size_t count, unsigned char* to) const {
        switch (header_.bits) {
            case 8:
                unpack_grey(from, count, to);
                return;
            case 24:
                each(from, 3, count, to, [](auto* at) { return Pixel{at[2], at[1], at[0], 255}; });
                return;
            case 32:
                swap_red_blue(from, count, to);
                return;
            default:
                unpack_555(from, count, to);
        }
    }
    void unpack_555(const unsigned char* from, std::size_t count, unsigned char* to) const {
        const bool has_alpha = header_.bits == 16 && header_.alpha_bits() != 0;
        each(from, 2, count, to, [has_alpha](auto* at) {
            Pixel pixel = opaque_from_555(u16_at(at));
            if (has_alpha && at[1] < 128) pixel[3] = 0;
            return pixel;
        });
    }
    bool unpack_mapped(const unsigned char* from, std::size_t count, unsigned char* to) const {
        const std::size_t step = header_.pixel_size();
        for (std::size_t i = 0; i < count; ++i, from += step, to += rgbaSize) {
            const unsigned index = step == 1 ? from[0] : u16_at(from);
            if (index < header_.first_index || index - header_.first_index >= map_.size()) return false;
            const Pixel& entry = map_[index - header_.first_index];
            std::copy(entry.begin(), entry.end(), to);
        }
        return true;
    }

    TgaHeader header_{};
    std::vector<Pixel> map_;
};

// Takes pixels in the file's order and puts them where the descriptor wants them.
class Placement {
public:
    Placement(const TgaHeader& header, unsigned char* pixels)
        : header_(header), pixels_(pixels), left_(std::size_t{header.width} * header.height) {}

    std::size_t left() const { return left_; }
    std::size_t left_in_row() const { return header_.width - column_; }
    unsigned char* place() const {
        const std::size_t row = header_.top_down() ? row_ : header_.height - 1 - row_;
        return pixels_ + (row * header_.width + column_) * rgbaSize;
    }
    // At most as many as are left in the row.
    void advance(std::size_t count) {
        left_ -= count;
        column_ += count;
        if (column_ < header_.width) return;
        column_ = 0;
        if (header_.right_to_left()) mirror(place());
        ++row_;
    }

private:
    void mirror(unsigned char* row) const {
        for (std::size_t a = 0, b = header_.width - 1; a < b; ++a, --b)
            std::swap_ranges(row + a * rgbaSize, row + (a + 1) * rgbaSize, row + b * rgbaSize);
    }

    const TgaHeader& header_;
    unsigned char* pixels_;
    std::size_t left_;
    std::size_t row_ = 0;
    std::size_t column_ = 0;
};

bool place_pixels(const Unpacker& unpacker, std::size_t pixel_size, const unsigned char* from,
                  std::size_t count, Placement& placement) {
    while (count > 0) {
        const std::size_t piece = std::min(count, placement.left_in_row());
        if (!unpacker.unpack(from, piece, placement.place())) return false;
        placement.advance(piece);
        from += piece * pixel_size;
        count -= piece;
    }
    return true;
}

void repeat_pixel(const Pixel& pixel, std::size_t count, Placement& placement) {
    while (count > 0) {
        const std::size_t piece = std::min(count, placement.left_in_row());
        unsigned char* to = placement.place();
        for (std::size_t i = 0; i < piece; ++i) std::copy(pixel.begin(), pixel.end(), to + i * rgbaSize);
        placement.advance(piece);
        count -= piece;
    }
}

bool read_packets(const Unpacker& unpacker, std::size_t pixel_size, ByteSpan data, Placement& placement) {
    while (placement.left() > 0) {
        if (data.empty()) return false;
        const std::size_t count = (data[0] & 0x7Fu) + 1;
        const bool repeated = data[0] >= 128;
        const std::size_t stored = (repeated ? 1 : count) * pixel_size;
        data = data.subspan(1);
        if (data.size() < stored || count > placement.left()) return false;
        if (repeated) {
            Pixel pixel{};
            if (!unpacker.unpack(data.data(), 1, pixel.data())) return false;
            repeat_pixel(pixel, count, placement);
        } else if (!place_pixels(unpacker, pixel_size, data.data(), count, placement)) {
            return false;
        }
        data = data.subspan(stored);
    }
    return true;
}

// Whether so many bytes can hold all pixels, asked before memory is.
bool can_hold(const TgaHeader& header, std::size_t bytes) {
    const std::uint64_t count = std::uint64_t{header.width} * header.height;
    if (!header.run_length()) return count * header.pixel_size() <= bytes;
    return count <= bytes / (header.pixel_size() + 1) * std::uint64_t{longestPacket};
}

}  // namespace

bool looks_like_tga(const unsigned char* data, unsigned size) {
    if (data == nullptr || size < headerSize) return false;
    if (size >= footerSize) {
        const unsigned char* end = data + size - footerMark.size();
        if (std::equal(footerMark.begin(), footerMark.end(), reinterpret_cast<const char*>(end))) return true;
    }
    return makes_sense(read_header(data), size);
}

bool load_tga(ByteSpan file, Image& image) {
    if (!looks_like_tga(file.data(), static_cast<unsigned>(file.size()))) return false;
    const TgaHeader header = read_header(file.data());
    Unpacker unpacker;
    if (!unpacker.choose(header) || header.width == 0 || header.height == 0) return false;
    if (headerSize + header.id_length > file.size()) return false;
    ByteSpan data = file.subspan(headerSize + header.id_length);
    if (header.map_type == 1) {
        if (data.empty() || header.map_size() > data.size() || !unpacker.read_map(data)) return false;
        data = data.subspan(header.map_size());
    }
    if (!within_pixel_limit(header.width, header.height) || !can_hold(header, data.size())) return false;
    kelmora::ByteBuffer pixels(std::size_t{header.width} * header.height * rgbaSize);
    Placement placement(header, pixels.data());
    const bool read = header.run_length() ? read_packets(unpacker, header.pixel_size(), data, placement)
                                          : place_pixels(unpacker, header.pixel_size(), data.data(),
                                                         placement.left(), placement);
    if (!read) return false;
    image.width = static_cast<int>(header.width);
    image.height = static_cast<int>(header.height);
    image.pixels = std::move(pixels);
    return true;
}

}  // namespace vh::png
