#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "plush/scene/geometry.h"
#include "plush/scene/tile_map.h"

namespace kelmora {

// Which quads may be met in each tile of a map.
class QuadGrid {
public:
    QuadGrid() = default;
    // Quads that are not finite are in no tile.
    QuadGrid(std::span<const Quad> quads, const TileMap& map, double tileSize);

    // Indices of the quads whose box overlaps the tile, in their order.
    std::span<const std::uint32_t> at(std::size_t cell) const {
        if (cell + 1 >= starts_.size()) return {};
        return std::span(indices_).subspan(starts_[cell], starts_[cell + 1] - starts_[cell]);
    }
    // Quads that overlap so many tiles that they stand in no tile's list: to be tried in every tile.
    std::span<const std::uint32_t> everywhere() const { return everywhere_; }

private:
    std::vector<std::size_t> starts_;
    std::vector<std::uint32_t> indices_;
    std::vector<std::uint32_t> everywhere_;
};

}  // namespace kelmora
