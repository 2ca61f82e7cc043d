#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <vector>

#include "codec/load_store.h"
#include "codec/output_file.h"
#include "codec/pixel_limit.h"
#include "codec/png.h"

namespace vh::png {
namespace {

constexpr std::uint32_t tileSide = 64;
constexpr std::string_view layerName = "Layer";
// A value, its property's number and length in front of it.
enum Property : std::uint32_t { End = 0, Opacity = 6, Visible = 8, Offsets = 15, Compression = 17 };

class Head {
public:
    void text(std::string_view letters) { bytes_.insert(bytes_.end(), letters.begin(), letters.end()); }
    void u8(std::uint8_t value) { bytes_.push_back(value); }
    void u32(std::uint32_t value) {
        std::array<unsigned char, 4> stored{};
        store_u32_big(stored.data(), value);
        bytes_.insert(bytes_.end(), stored.begin(), stored.end());
    }
    // A place for an offset that is not known yet.
    std::size_t hole() {
        u32(0);
        return bytes_.size() - 4;
    }
    void fill(std::size_t hole) {
        store_u32_big(bytes_.data() + hole, static_cast<std::uint32_t>(bytes_.size()));
    }
    std::size_t size() const { return bytes_.size(); }
    const std::vector<unsigned char>& bytes() const { return bytes_; }

private:
    std::vector<unsigned char> bytes_;
};

struct Tiles {
    std::uint32_t width;
    std::uint32_t height;

    std::uint32_t across() const { return (width - 1) / tileSide + 1; }
    std::uint32_t down() const { return (height - 1) / tileSide + 1; }
    std::uint32_t columns(std::uint32_t x) const { return std::min(tileSide, width - x * tileSide); }
    std::uint32_t rows(std::uint32_t y) const { return std::min(tileSide, height - y * tileSide); }
};

void put_image_head(Head& out, const Tiles& tiles) {
    out.text("gimp xcf v001");
    out.u8(0);
    out.u32(tiles.width);
    out.u32(tiles.height);
    out.u32(0);  // RGB
    out.u32(Compression);
    out.u32(1);
    out.u8(1);  // run-length
    out.u32(End);
    out.u32(0);
}

void put_layer_head(Head& out, const Tiles& tiles) {
    out.u32(tiles.width);
    out.u32(tiles.height);
    out.u32(1);  // RGB with alpha
    out.u32(static_cast<std::uint32_t>(layerName.size() + 1));
    out.text(layerName);
    out.u8(0);
    for (const auto& [property, value] : {std::pair{Opacity, 255u}, std::pair{Visible, 1u}}) {
        out.u32(property);
        out.u32(4);
        out.u32(value);
    }
    out.u32(Offsets);
    out.u32(8);
    out.u32(0);
    out.u32(0);
    out.u32(End);
    out.u32(0);
}

// Run-length codes of a tile, one channel after the other: the one kind of tile that every program reads.
class TileEncoder {
public:
    TileEncoder(const Tiles& tiles, const unsigned char* pixels) : tiles_(tiles), pixels_(pixels) {}

    const std::vector<unsigned char>& encode(std::uint32_t column, std::uint32_t row) {
        codes_.clear();
        const std::size_t row_size = std::size_t{tiles_.width} * rgbaSize;
        const unsigned char* tile =
            pixels_ + row * tileSide * row_size + std::size_t{column} * tileSide * rgbaSize;
        const std::size_t columns = tiles_.columns(column);
        for (std::size_t channel = 0; channel < rgbaSize; ++channel) {
            std::size_t size = 0;
            for (std::size_t y = 0; y < tiles_.rows(row); ++y) {
                const unsigned char* from = tile + y * row_size + channel;
                for (std::size_t x = 0; x < columns; ++x) plane_[size++] = from[x * rgbaSize];
            }
            encode_plane(size);
        }
        return codes_;
    }

private:
    static constexpr std::size_t shortestRun = 3;
    static constexpr std::size_t longestShortForm = 127;

    std::size_t run_at(std::size_t start, std::size_t size) const {
        std::size_t end = start + 1;
        while (end < size && plane_[end] == plane_[start]) ++end;
        return end - start;
    }
    void encode_plane(std::size_t size) {
        std::size_t literals = 0;  // where the bytes that are in no run begin
        for (std::size_t i = 0; i < size;) {
            const std::size_t run = run_at(i, size);
            if (run >= shortestRun) {
                put_literals(literals, i);
                put_run(plane_[i], run);
                literals = i + run;
            }
            i += run;
        }
        put_literals(literals, size);
    }
    void put_run(unsigned char value, std::size_t count) {
        if (count <= longestShortForm)
            codes_.push_back(static_cast<unsigned char>(count - 1));
        else
            put_long(127, count);
        codes_.push_back(value);
    }
    void put_literals(std::size_t from, std::size_t to) {
        if (from == to) return;
        if (to - from <= longestShortForm)
            codes_.push_back(static_cast<unsigned char>(256 - (to - from)));
        else
            put_long(128, to - from);
        codes_.insert(codes_.end(), plane_.begin() + static_cast<std::ptrdiff_t>(from),
                      plane_.begin() + static_cast<std::ptrdiff_t>(to));
    }
    void put_long(unsigned char code, std::size_t count) {
        codes_.push_back(code);
        codes_.push_back(static_cast<unsigned char>(count >> 8));
        codes_.push_back(static_cast<unsigned char>(count & 0xFF));
    }

    const Tiles& tiles_;
    const unsigned char* pixels_;
    std::array<unsigned char, std::size_t{tileSide} * tileSide> plane_{};
    std::vector<unsigned char> codes_;
};

// Everything in front of the tiles. False when their offsets do not fit 32 bits. Encoding twice, here for the
// sizes and then to write, takes no memory that grows with the picture.
bool build_head(const Tiles& tiles, TileEncoder& encoder, Head& out) {
    put_image_head(out, tiles);
    const std::size_t layer = out.hole();
    out.u32(0);  // no more layers
    out.u32(0);  // no channels
    out.fill(layer);
    put_layer_head(out, tiles);
    const std::size_t hierarchy = out.hole();
    out.u32(0);  // no mask
    out.fill(hierarchy);
    out.u32(tiles.width);
    out.u32(tiles.height);
    out.u32(rgbaSize);
    const std::size_t level = out.hole();
    out.u32(0);  // no smaller levels
    out.fill(level);
    out.u32(tiles.width);
    out.u32(tiles.height);
    std::uint64_t offset = out.size() + 4 * (std::uint64_t{tiles.across()} * tiles.down() + 1);
    for (std::uint32_t y = 0; y < tiles.down(); ++y) {
        for (std::uint32_t x = 0; x < tiles.across(); ++x) {
            out.u32(static_cast<std::uint32_t>(offset));
            offset += encoder.encode(x, y).size();
        }
    }
    out.u32(0);
    return offset <= std::numeric_limits<std::uint32_t>::max();
}

}  // namespace

bool save_xcf_rgba8_file(const char* path, const unsigned char* pixels, int width, int height) {
    if (path == nullptr || pixels == nullptr || width < 1 || height < 1) return false;
    const Tiles tiles{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
    if (!within_pixel_limit(tiles.width, tiles.height)) return false;
    TileEncoder encoder(tiles, pixels);
    Head head;
    if (!build_head(tiles, encoder, head)) return false;
    OutputFile file(path);
    if (!file.is_open()) return false;
    file.write(head.bytes());
    for (std::uint32_t y = 0; y < tiles.down(); ++y) {
        for (std::uint32_t x = 0; x < tiles.across(); ++x) file.write(encoder.encode(x, y));
    }
    return file.close();
}

}  // namespace vh::png
