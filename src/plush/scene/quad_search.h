#pragma once

#include <algorithm>
#include <array>

#include "plush/scene/tile_surfaces.h"

namespace kelmora {

// Looks for the first quad behind the last one that a ray meets on a span, by the boxes of trees.
class QuadSearch {
public:
    // Quads further than `furthest` are of no interest.
    QuadSearch(const RenderScene& scene, const RayUnderWay& ray, const RaySpan& span, const LastQuad& last,
               double furthest)
        : scene_(scene), ray_(ray), span_(span), last_(last), best_{furthest, 0, 0} {}

    void tryList(const QuadList& list) {
        if (list.tree)
            tryTree(list);
        else
            for (const std::uint32_t index : list.indices) tryQuad(index);
    }

    bool hasFound() const { return found_; }
    const QuadHit& met() const { return best_; }
    std::uint32_t index() const { return index_; }

private:
    void tryQuad(std::uint32_t index) {
        QuadHit met;
        if (meetsQuad(ray_, span_, scene_.quads[index], index, last_, met)) offer(met, index);
    }

    // Equal quads in one place are met together: the first of them that comes behind the last one.
    void tryStack(std::span<const std::uint32_t> stack) {
        QuadHit met;
        if (!meetsQuad(ray_, span_, scene_.quads[stack.front()], stack.back(), last_, met)) return;
        const auto first = met.distance == last_.distance
                               ? std::upper_bound(stack.begin(), stack.end(), last_.index)
                               : stack.begin();
        offer(met, *first);
    }

    void offer(const QuadHit& met, std::uint32_t index) {
        if (met.distance > best_.distance || (found_ && met.distance == best_.distance && index > index_))
            return;
        if (!scene_.texture(scene_.quads[index].texture)) return;
        best_ = met;
        index_ = index;
        found_ = true;
    }

    // Whether a quad in the box may come before the best one.
    bool isOfUse(const QuadNode& node, double& first) const {
        const RaySpan inside = spanInBox(ray_, span_, node.box);
        first = inside.first;
        return !inside.isEmpty() && inside.first - tileMargin <= best_.distance &&
               inside.last + tileMargin >= last_.distance;
    }

    void tryTree(const QuadList& list) {
        std::array<const QuadNode*, deepestQuadTree> waiting;
        std::size_t count = 0;
        double first = 0;
        double otherFirst = 0;
        waiting[count++] = list.tree;
        while (count > 0) {
            const QuadNode* node = waiting[--count];
            if (!isOfUse(*node, first)) continue;
            while (!node->isLeaf()) {
                const QuadNode* left = node + 1;
                const QuadNode* right = list.tree + node->right;
                const bool takesLeft = isOfUse(*left, first);
                const bool takesRight = isOfUse(*right, otherFirst);
                node = takesLeft && (!takesRight || first <= otherFirst) ? left : right;
                if (takesLeft && takesRight) waiting[count++] = node == left ? right : left;
                if (!takesLeft && !takesRight) break;
            }
            if (!node->isLeaf()) continue;
            const auto indices = list.indices.subspan(node->first, node->count);
            if (node->isStack)
                tryStack(indices);
            else
                for (const std::uint32_t index : indices) tryQuad(index);
        }
    }

    const RenderScene& scene_;
    const RayUnderWay& ray_;
    RaySpan span_;
    LastQuad last_;
    QuadHit best_;
    std::uint32_t index_ = 0;
    bool found_ = false;
};

}  // namespace kelmora
