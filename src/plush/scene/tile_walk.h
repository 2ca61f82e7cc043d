#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "plush/scene/geometry.h"

namespace kelmora {

// The tiles along a ray, one after the other. Distances are in lengths of the direction.
class TileWalk {
public:
    // Starts in the given tile even where the origin lies a hair outside it.
    TileWalk(const Vector& origin, const Vector& direction, double tileSize, std::int32_t startX,
             std::int32_t startY)
        : x_(axis(origin.x, direction.x, tileSize, startX)),
          y_(axis(origin.y, direction.y, tileSize, startY)),
          tileSize_(tileSize) {}

    std::int32_t x() const { return x_.tile; }
    std::int32_t y() const { return y_.tile; }
    // Where the walk came into this tile; 0 in the first.
    double entered() const { return entered_; }
    // Where it leaves it.
    double leaves() const { return x_.next < y_.next ? x_.next : y_.next; }
    // Whether the boundary crossed last is one of constant x, and its coordinate.
    bool crossedX() const { return crossedX_; }
    double boundary() const { return crossedX_ ? x_.crossed : y_.crossed; }

    void advance() {
        crossedX_ = x_.next < y_.next;
        Axis& axis = crossedX_ ? x_ : y_;
        entered_ = axis.next > entered_ ? axis.next : entered_;
        axis.crossed = axis.line * tileSize_;
        axis.tile += axis.step;
        axis.line += axis.lineStep;
        axis.next = (axis.line * tileSize_ - axis.origin) * axis.inverse;
    }

private:
    struct Axis {
        std::int32_t tile;
        std::int32_t step;
        double line;  // the next boundary, counted in tiles
        double lineStep;
        double origin;
        double inverse;
        double next;  // distance of that boundary
        double crossed = 0;
    };
    static Axis axis(double origin, double direction, double tileSize, std::int32_t tile) {
        const bool up = direction > 0;
        const double line = static_cast<double>(tile) + (up ? 1 : 0);
        if (direction == 0) return {tile, 0, line, 0, origin, 0, std::numeric_limits<double>::infinity()};
        const double inverse = 1 / direction;
        return {
            tile, up ? 1 : -1, line, up ? 1.0 : -1.0, origin, inverse, (line * tileSize - origin) * inverse};
    }

    Axis x_;
    Axis y_;
    double tileSize_;
    double entered_ = 0;
    bool crossedX_ = false;
};

}  // namespace kelmora
