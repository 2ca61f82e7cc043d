#include "plush/scene/open_view.h"

#include <algorithm>
#include <cmath>

namespace kelmora {
namespace {

// The point has to be this far from the slabs, and this much of a tile from its edges, so that a walk to it
// ends in its tile.
constexpr double fromSlabs = 0.001;
constexpr double fromEdges = 1e-6;
constexpr double farthestTile = 1e6;

bool isInside(double coordinate, double tileSize) {
    const double part = coordinate / tileSize - std::floor(coordinate / tileSize);
    return part > fromEdges && part < 1 - fromEdges && std::fabs(coordinate) < farthestTile * tileSize;
}

// Takes in the part of the line from one point to another that lies between two places of the first axis.
void takeIn(double one, double otherOfOne, double next, double otherOfNext, double first, double last,
            double& low, double& high) {
    const double begin = std::max(std::min(one, next), first);
    const double end = std::min(std::max(one, next), last);
    if (begin > end) return;
    for (const double place : {begin, end}) {
        const double share = next == one ? 0 : (place - one) / (next - one);
        const double other = otherOfOne + (otherOfNext - otherOfOne) * share;
        low = std::min(low, other);
        high = std::max(high, other);
    }
}

}  // namespace

OpenView::OpenView(const RenderScene& scene, const Vector& point)
    : scene_(scene),
      point_(point),
      slack_(0.03 + 1e-6 * scene.tileSize + 1e-8 * (std::fabs(point.x) + std::fabs(point.y))),
      tileX_(tileOf(point.x, scene.tileSize)),
      tileY_(tileOf(point.y, scene.tileSize)) {
    const std::size_t index = scene.map.find(tileX_, tileY_);
    if (index == TileMap::outside || !isInside(point.x, scene.tileSize) || !isInside(point.y, scene.tileSize))
        return;
    const TileCell& cell = scene.map.cell(index);
    floor_ = scene.floorHeight(cell);
    roof_ = scene.roofHeight(cell);
    if (point.z > floor_ + fromSlabs && point.z < roof_ - fromSlabs) own_ = &cell;
}

bool OpenView::isFree(std::int32_t x, std::int32_t firstY, std::int32_t lastY) const {
    for (std::int32_t y = firstY; y <= lastY; ++y) {
        const std::size_t index = scene_.map.find(x, y);
        if (index == TileMap::outside) return false;
        const TileCell& cell = scene_.map.cell(index);
        if (cell.wall > 0 || cell.floorOffset != own_->floorOffset || cell.roofOffset != own_->roofOffset)
            return false;
    }
    return true;
}

// All ways from the tile to the point lie between the lines from its corners.
bool OpenView::isOpen(std::int32_t tileX, std::int32_t tileY) const {
    if (!own_) return false;
    const double size = scene_.tileSize;
    const double lowX = tileX * size - slack_;
    const double highX = (tileX + 1.0) * size + slack_;
    const double lowY = tileY * size - slack_;
    const double highY = (tileY + 1.0) * size + slack_;
    // A walk leaves neither the columns nor the rows between the two tiles.
    const std::int32_t firstX = std::min(tileX, tileX_);
    const std::int32_t lastX = std::max(tileX, tileX_);
    const std::int32_t firstY = std::min(tileY, tileY_);
    const std::int32_t lastY = std::max(tileY, tileY_);
    for (std::int32_t x = firstX; x <= lastX; ++x) {
        const double first = x * size - slack_;
        const double last = (x + 1.0) * size + slack_;
        double low = HUGE_VAL;
        double high = -HUGE_VAL;
        for (const double cornerX : {lowX, highX})
            for (const double cornerY : {lowY, highY}) {
                takeIn(cornerX, cornerY, point_.x, point_.y, first, last, low, high);
                if (cornerX >= first && cornerX <= last) {
                    low = std::min(low, cornerY);
                    high = std::max(high, cornerY);
                }
            }
        if (low > high) continue;
        if (!isFree(x, std::max(tileOf(low - slack_, size), firstY),
                    std::min(tileOf(high + slack_, size), lastY)))
            return false;
    }
    return true;
}

}  // namespace kelmora
