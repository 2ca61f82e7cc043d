#include "plush/scene/quad_tree.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace kelmora {
namespace {

constexpr std::size_t leafSize = 8;

// The corners and the texture, which stand first in a quad, say all that a picture shows of it.
static_assert(std::is_standard_layout_v<Quad> && offsetof(Quad, normal) == 13 * sizeof(float));

int compared(const Quad& one, const Quad& other) {
    return std::memcmp(&one, &other, offsetof(Quad, normal));
}

QuadBox around(const QuadBox& a, const QuadBox& b) {
    return {std::min(a.minX, b.minX), std::max(a.maxX, b.maxX), std::min(a.minY, b.minY),
            std::max(a.maxY, b.maxY), std::min(a.minZ, b.minZ), std::max(a.maxZ, b.maxZ)};
}

// A quad with the middle of its box.
struct Item {
    std::array<float, 3> middle;
    std::uint32_t index;
};

class TreeBuilder {
public:
    TreeBuilder(std::span<const Quad> quads, std::span<std::uint32_t> list, std::vector<QuadNode>& nodes)
        : quads_(quads), list_(list), nodes_(nodes), root_(nodes.size()) {
        items_.reserve(list.size());
        for (const std::uint32_t index : list) {
            const QuadBox& box = quads[index].box;
            items_.push_back(
                {{box.minX / 2 + box.maxX / 2, box.minY / 2 + box.maxY / 2, box.minZ / 2 + box.maxZ / 2},
                 index});
        }
    }

    void build(std::size_t first, std::size_t count) {
        const std::span<Item> items = std::span(items_).subspan(first, count);
        const std::size_t own = nodes_.size();
        nodes_.push_back(
            {{}, static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(count), 0, isStack(items)});
        if (count <= leafSize || nodes_[own].isStack) {
            fillLeaf(nodes_[own], items);
            return;
        }
        halve(items);
        build(first, count / 2);
        const std::size_t right = nodes_.size();
        build(first + count / 2, count - count / 2);
        nodes_[own].right = static_cast<std::uint32_t>(right - root_);
        nodes_[own].box = around(nodes_[own + 1].box, nodes_[right].box);
    }

private:
    const Quad& quadOf(const Item& item) const { return quads_[item.index]; }

    bool isStack(std::span<const Item> items) const {
        return items.size() > 1 && std::all_of(items.begin(), items.end(), [&](const Item& item) {
                   return compared(quadOf(item), quadOf(items.front())) == 0;
               });
    }

    void fillLeaf(QuadNode& node, std::span<const Item> items) const {
        node.box = quadOf(items.front()).box;
        const auto place = list_.subspan(node.first, node.count);
        for (std::size_t i = 0; i < items.size(); ++i) {
            place[i] = items[i].index;
            node.box = around(node.box, quadOf(items[i]).box);
        }
        std::sort(place.begin(), place.end());
    }

    // Puts the half with the lower middles first, on the axis on which middles lie furthest apart. Quads in
    // one place are kept apart by what they look like, so that equal ones come together.
    void halve(std::span<Item> items) const {
        std::size_t axis = 0;
        float widest = -1;
        for (std::size_t i = 0; i < 3; ++i) {
            const auto [low, high] = std::minmax_element(
                items.begin(), items.end(),
                [i](const Item& one, const Item& other) { return one.middle[i] < other.middle[i]; });
            if (const float extent = high->middle[i] - low->middle[i]; extent > widest) {
                widest = extent;
                axis = i;
            }
        }
        const auto half = items.begin() + static_cast<std::ptrdiff_t>(items.size() / 2);
        std::nth_element(items.begin(), half, items.end(), [&](const Item& one, const Item& other) {
            if (one.middle[axis] != other.middle[axis]) return one.middle[axis] < other.middle[axis];
            return widest == 0 && compared(quadOf(one), quadOf(other)) < 0;
        });
    }

    std::span<const Quad> quads_;
    std::span<std::uint32_t> list_;
    std::vector<QuadNode>& nodes_;
    std::vector<Item> items_;
    std::size_t root_;
};

}  // namespace

void appendQuadTree(std::span<const Quad> quads, std::span<std::uint32_t> list,
                    std::vector<QuadNode>& nodes) {
    TreeBuilder(quads, list, nodes).build(0, list.size());
}

}  // namespace kelmora
