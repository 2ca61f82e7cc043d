#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelmora {

// Numbers of tiles, [x][y]. Columns may differ in length.
using TileTable = std::vector<std::vector<std::int32_t>>;

// The tile that holds a coordinate; -1 for what lies below 0 or is no sensible number.
inline std::int32_t tileOf(double coordinate, double tileSize) {
    const double tile = std::floor(coordinate / tileSize);
    return tile >= 0 && tile < 2147483647.0 ? static_cast<std::int32_t>(tile) : -1;
}

// One tile with what all tables say of it. A texture is 0 where there is no surface.
struct TileCell {
    std::int32_t wall = 0;
    std::int32_t roof = 0;
    std::int32_t floor = 0;
    std::int32_t roofOffset = 0;
    std::int32_t floorOffset = 0;
};

// The tiles of a scene in one block. Its extent is that of the walls: a column ends where theirs ends, and
// what the other tables lack is 0.
class TileMap {
public:
    TileMap() = default;
    // Textures at `textureCount` or beyond are no surfaces.
    TileMap(const TileTable& walls, const TileTable& roofs, const TileTable& floors,
            const TileTable& roofOffsets, const TileTable& floorOffsets, std::size_t textureCount);

    std::int32_t columns() const { return static_cast<std::int32_t>(starts_.size()) - 1; }
    std::int32_t rows(std::int32_t x) const {
        const auto column = static_cast<std::size_t>(x);
        return static_cast<std::int32_t>(starts_[column + 1] - starts_[column]);
    }
    std::size_t size() const { return cells_.size(); }
    const TileCell& cell(std::size_t index) const { return cells_[index]; }

    static constexpr std::size_t outside = SIZE_MAX;
    // Index of a tile, or `outside`.
    std::size_t find(std::int32_t x, std::int32_t y) const {
        if (x < 0 || x >= columns() || y < 0) return outside;
        const auto column = static_cast<std::size_t>(x);
        const std::size_t index = starts_[column] + static_cast<std::size_t>(y);
        return index < starts_[column + 1] ? index : outside;
    }

private:
    std::vector<std::size_t> starts_{0};  // of each column in the cells, and the end
    std::vector<TileCell> cells_;
};

}  // namespace kelmora
