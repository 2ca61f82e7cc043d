#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "plush/scene/quad_grid.h"
#include "plush/scene/tile_map.h"

namespace kelmora {

// What a ray may find in a tile. Textures may be dead: a flag says where to look, not what is there.
namespace tileFlag {
constexpr unsigned outside = 1;  // the map ends here
constexpr unsigned wall = 2;
constexpr unsigned quads = 4;
constexpr unsigned floor = 8;
constexpr unsigned roof = 16;
// A slab's height is another one than in the neighbour at smaller or larger x or y.
constexpr unsigned stepFromLowX = 32;
constexpr unsigned stepFromHighX = 64;
constexpr unsigned stepFromLowY = 128;
constexpr unsigned stepFromHighY = 256;
constexpr unsigned steps = stepFromLowX | stepFromHighX | stepFromLowY | stepFromHighY;
}  // namespace tileFlag

// The flags of a map's tiles as a rectangle with a border that is outside, so that a walk needs no limits.
class TileFlags {
public:
    TileFlags() = default;
    TileFlags(const TileMap& map, const QuadGrid& quads);

    // False for maps whose columns differ so much in length that a rectangle would be mostly empty.
    bool isLaidOut() const { return !flags_.empty(); }
    // From a tile to its neighbour at larger x; those at larger y follow each other.
    std::ptrdiff_t stride() const { return stride_; }
    // Of a tile on the map.
    const std::uint16_t* at(std::int32_t x, std::int32_t y) const {
        return flags_.data() + (static_cast<std::ptrdiff_t>(x) + 1) * stride_ + y + 1;
    }

private:
    std::vector<std::uint16_t> flags_;
    std::ptrdiff_t stride_ = 0;
};

}  // namespace kelmora
