#include "plush/scene/tile_map.h"

namespace kelmora {
namespace {

std::int32_t entryAt(const TileTable& table, std::size_t x, std::size_t y) {
    return x < table.size() && y < table[x].size() ? table[x][y] : 0;
}

}  // namespace

TileMap::TileMap(const TileTable& walls, const TileTable& roofs, const TileTable& floors,
                 const TileTable& roofOffsets, const TileTable& floorOffsets, std::size_t textureCount) {
    const auto surface = [textureCount](std::int32_t texture) {
        return texture > 0 && static_cast<std::size_t>(texture) < textureCount ? texture : 0;
    };
    for (std::size_t x = 0; x < walls.size(); ++x) {
        for (std::size_t y = 0; y < walls[x].size(); ++y)
            cells_.push_back({surface(walls[x][y]), surface(entryAt(roofs, x, y)),
                              surface(entryAt(floors, x, y)), entryAt(roofOffsets, x, y),
                              entryAt(floorOffsets, x, y)});
        starts_.push_back(cells_.size());
    }
}

}  // namespace kelmora
