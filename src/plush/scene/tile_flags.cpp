#include "plush/scene/tile_flags.h"

#include <algorithm>

namespace kelmora {
namespace {

// Room for a map with short columns, and how much larger than its tiles the rectangle may be.
constexpr std::size_t smallArea = std::size_t{1} << 20;
constexpr std::size_t largestShare = 4;

bool differ(const TileMap& map, const TileCell& cell, std::int32_t x, std::int32_t y) {
    const std::size_t index = map.find(x, y);
    if (index == TileMap::outside) return false;
    const TileCell& other = map.cell(index);
    return other.roofOffset != cell.roofOffset || other.floorOffset != cell.floorOffset;
}

}  // namespace

TileFlags::TileFlags(const TileMap& map, const QuadGrid& quads) {
    std::int32_t rows = 0;
    for (std::int32_t x = 0; x < map.columns(); ++x) rows = std::max(rows, map.rows(x));
    const std::size_t columns = static_cast<std::size_t>(map.columns()) + 2;
    const std::size_t stride = static_cast<std::size_t>(rows) + 2;
    if (rows == 0 || columns > std::max(smallArea, map.size() * largestShare) / stride) return;
    stride_ = static_cast<std::ptrdiff_t>(stride);
    flags_.assign(columns * stride, tileFlag::outside);
    for (std::int32_t x = 0; x < map.columns(); ++x)
        for (std::int32_t y = 0; y < map.rows(x); ++y) {
            const std::size_t index = map.find(x, y);
            const TileCell& cell = map.cell(index);
            const bool hasQuads = !quads.at(index).empty() || !quads.everywhere().empty();
            const auto set = [](bool holds, unsigned flag) { return holds ? flag : 0u; };
            flags_[static_cast<std::size_t>(at(x, y) - flags_.data())] = static_cast<std::uint16_t>(
                set(cell.wall > 0, tileFlag::wall) | set(hasQuads, tileFlag::quads) |
                set(cell.floor > 0, tileFlag::floor) | set(cell.roof > 0, tileFlag::roof) |
                set(differ(map, cell, x - 1, y), tileFlag::stepFromLowX) |
                set(differ(map, cell, x + 1, y), tileFlag::stepFromHighX) |
                set(differ(map, cell, x, y - 1), tileFlag::stepFromLowY) |
                set(differ(map, cell, x, y + 1), tileFlag::stepFromHighY));
        }
}

}  // namespace kelmora
