#include "plush/scene/quad_grid.h"

#include <algorithm>

namespace kelmora {
namespace {

// What the lists of all tiles may hold together; 64 MiB.
constexpr std::size_t maximumEntries = std::size_t{1} << 24;

std::int32_t cutTile(float coordinate, double tileSize, std::int32_t limit) {
    const double tile = std::floor(static_cast<double>(coordinate) / tileSize);
    return static_cast<std::int32_t>(std::clamp(tile, -1.0, static_cast<double>(limit)));
}

// Calls `visit` with each tile of the map that the box overlaps.
template <typename Visit>
void forEachTile(const Quad& quad, const TileMap& map, double tileSize, const Visit& visit) {
    const std::int32_t columns = map.columns();
    const std::int32_t firstX = std::max(cutTile(quad.box.minX, tileSize, columns), 0);
    const std::int32_t lastX = std::min(cutTile(quad.box.maxX, tileSize, columns), columns - 1);
    for (std::int32_t x = firstX; x <= lastX; ++x) {
        const std::int32_t rows = map.rows(x);
        const std::int32_t firstY = std::max(cutTile(quad.box.minY, tileSize, rows), 0);
        const std::int32_t lastY = std::min(cutTile(quad.box.maxY, tileSize, rows), rows - 1);
        if (firstY > lastY) continue;
        visit(map.find(x, firstY), static_cast<std::size_t>(lastY - firstY + 1));
    }
}

}  // namespace

QuadGrid::QuadGrid(std::span<const Quad> quads, const TileMap& map, double tileSize) {
    if (quads.empty() || !(tileSize > 0) || !std::isfinite(tileSize)) return;
    std::vector<bool> listed(quads.size(), false);
    std::vector<std::size_t> counts(map.size() + 1, 0);
    std::size_t total = 0;
    for (std::size_t i = 0; i < quads.size(); ++i) {
        if (!quads[i].isFinite()) continue;
        std::size_t tiles = 0;
        forEachTile(quads[i], map, tileSize, [&](std::size_t, std::size_t count) { tiles += count; });
        if (tiles > maximumEntries - total) {
            everywhere_.push_back(static_cast<std::uint32_t>(i));
            continue;
        }
        total += tiles;
        listed[i] = true;
        forEachTile(quads[i], map, tileSize, [&](std::size_t first, std::size_t count) {
            for (std::size_t cell = first; cell < first + count; ++cell) ++counts[cell];
        });
    }
    starts_.assign(map.size() + 1, 0);
    for (std::size_t cell = 0; cell < map.size(); ++cell) starts_[cell + 1] = starts_[cell] + counts[cell];
    indices_.resize(total);
    std::vector<std::size_t> next = starts_;
    for (std::size_t i = 0; i < quads.size(); ++i)
        if (listed[i])
            forEachTile(quads[i], map, tileSize, [&](std::size_t first, std::size_t count) {
                for (std::size_t cell = first; cell < first + count; ++cell)
                    indices_[next[cell]++] = static_cast<std::uint32_t>(i);
            });
    plantTrees(quads);
}

void QuadGrid::plantTrees(std::span<const Quad> quads) {
    if (everywhere_.size() >= shortestQuadTree) appendQuadTree(quads, everywhere_, nodes_);
    for (std::size_t cell = 0; cell + 1 < starts_.size(); ++cell) {
        const std::size_t count = starts_[cell + 1] - starts_[cell];
        if (count < shortestQuadTree) continue;
        trees_.push_back({cell, nodes_.size()});
        appendQuadTree(quads, std::span(indices_).subspan(starts_[cell], count), nodes_);
    }
}

const QuadNode* QuadGrid::treeAt(std::size_t cell) const {
    const auto tree = std::lower_bound(trees_.begin(), trees_.end(), cell,
                                       [](const Tree& one, std::size_t wanted) { return one.cell < wanted; });
    return nodes_.data() + tree->root;
}

}  // namespace kelmora
