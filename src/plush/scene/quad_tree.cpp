#include "plush/scene/quad_tree.h"

#include <algorithm>

namespace kelmora {
namespace {

constexpr std::size_t leafSize = 8;

QuadBox boxAround(std::span<const Quad> quads, std::span<const std::uint32_t> list) {
    QuadBox all = quads[list.front()].box;
    for (const std::uint32_t index : list) {
        const QuadBox& box = quads[index].box;
        all = {std::min(all.minX, box.minX), std::max(all.maxX, box.maxX), std::min(all.minY, box.minY),
               std::max(all.maxY, box.maxY), std::min(all.minZ, box.minZ), std::max(all.maxZ, box.maxZ)};
    }
    return all;
}

// Twice the middle of a box on each axis.
Vector middleOf(const QuadBox& box) {
    return Vector(Vec3{box.minX, box.minY, box.minZ}) + Vector(Vec3{box.maxX, box.maxY, box.maxZ});
}

// Puts the half with the lower middles first, on the axis on which middles lie furthest apart.
void halve(std::span<const Quad> quads, std::span<std::uint32_t> list) {
    Vector low = middleOf(quads[list.front()].box);
    Vector high = low;
    for (const std::uint32_t index : list) {
        const Vector middle = middleOf(quads[index].box);
        low = {std::min(low.x, middle.x), std::min(low.y, middle.y), std::min(low.z, middle.z)};
        high = {std::max(high.x, middle.x), std::max(high.y, middle.y), std::max(high.z, middle.z)};
    }
    const Vector extent = high - low;
    const double Vector::*axis = extent.x >= extent.y && extent.x >= extent.z ? &Vector::x
                                 : extent.y >= extent.z                       ? &Vector::y
                                                                              : &Vector::z;
    const auto half = list.begin() + static_cast<std::ptrdiff_t>(list.size() / 2);
    std::nth_element(list.begin(), half, list.end(), [&](std::uint32_t one, std::uint32_t other) {
        return middleOf(quads[one].box).*axis < middleOf(quads[other].box).*axis;
    });
}

class TreeBuilder {
public:
    TreeBuilder(std::span<const Quad> quads, std::span<std::uint32_t> list, std::vector<QuadNode>& nodes)
        : quads_(quads), list_(list), nodes_(nodes), root_(nodes.size()) {}

    void build(std::size_t first, std::size_t count) {
        const std::span<std::uint32_t> part = list_.subspan(first, count);
        const std::size_t own = nodes_.size();
        nodes_.push_back({boxAround(quads_, part), static_cast<std::uint32_t>(first),
                          static_cast<std::uint32_t>(count), 0});
        if (count <= leafSize) return;
        halve(quads_, part);
        build(first, count / 2);
        nodes_[own].right = static_cast<std::uint32_t>(nodes_.size() - root_);
        build(first + count / 2, count - count / 2);
    }

private:
    std::span<const Quad> quads_;
    std::span<std::uint32_t> list_;
    std::vector<QuadNode>& nodes_;
    std::size_t root_;
};

}  // namespace

void appendQuadTree(std::span<const Quad> quads, std::span<std::uint32_t> list,
                    std::vector<QuadNode>& nodes) {
    TreeBuilder(quads, list, nodes).build(0, list.size());
}

}  // namespace kelmora
