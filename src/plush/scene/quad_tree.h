#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "plush/scene/geometry.h"

namespace kelmora {

// A part of a long list of quads, with a box around all of theirs. Nodes stand in the order of a walk that
// goes into the left child first, which follows its parent.
struct QuadNode {
    QuadBox box;
    std::uint32_t first;  // in the list
    std::uint32_t count;
    std::uint32_t right;  // number of the right child; 0 in a leaf
    bool isStack;         // a leaf of equal quads in one place, in their order

    bool isLeaf() const { return right == 0; }
};

// Lists of fewer quads are not worth a tree.
constexpr std::size_t shortestQuadTree = 16;
// More levels than any tree has: each halves its list.
constexpr std::size_t deepestQuadTree = 40;

// Orders the list so that quads near each other stand together, and appends the nodes of its tree.
void appendQuadTree(std::span<const Quad> quads, std::span<std::uint32_t> list, std::vector<QuadNode>& nodes);

}  // namespace kelmora
