#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "plush/scene/geometry.h"
#include "plush/scene/quad_tree.h"
#include "plush/scene/tile_map.h"

namespace kelmora {

// Some quads, by their indices in any order. A long list has a tree, whose root is its first node.
struct QuadList {
    std::span<const std::uint32_t> indices;
    const QuadNode* tree = nullptr;
};

// Which quads may be met in each tile of a map.
class QuadGrid {
public:
    QuadGrid() = default;
    // Quads that are not finite are in no tile.
    QuadGrid(std::span<const Quad> quads, const TileMap& map, double tileSize);

    // Quads whose box overlaps the tile.
    std::span<const std::uint32_t> at(std::size_t cell) const {
        if (cell + 1 >= starts_.size()) return {};
        return std::span(indices_).subspan(starts_[cell], starts_[cell + 1] - starts_[cell]);
    }
    QuadList listAt(std::size_t cell) const {
        const std::span<const std::uint32_t> indices = at(cell);
        return {indices, indices.size() < shortestQuadTree ? nullptr : treeAt(cell)};
    }
    // Quads that overlap so many tiles that they stand in no tile's list: to be tried in every tile.
    std::span<const std::uint32_t> everywhere() const { return everywhere_; }
    QuadList everywhereList() const {
        return {everywhere_, everywhere_.size() < shortestQuadTree ? nullptr : nodes_.data()};
    }

private:
    struct Tree {
        std::size_t cell;
        std::size_t root;
    };
    void plantTrees(std::span<const Quad> quads);
    const QuadNode* treeAt(std::size_t cell) const;

    std::vector<std::size_t> starts_;
    std::vector<std::uint32_t> indices_;
    std::vector<std::uint32_t> everywhere_;
    std::vector<QuadNode> nodes_;
    std::vector<Tree> trees_;  // by cell
};

}  // namespace kelmora
