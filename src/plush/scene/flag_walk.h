#pragma once

#include <limits>

#include "plush/scene/geometry.h"
#include "plush/scene/tile_flags.h"

namespace kelmora {

// A tile walk, to the last bit, that passes over tiles in which nothing is to be done.
class FlagWalk {
public:
    // Stops at tiles with one of the flags of `interest`, where a ray comes in at walls and steps as well.
    // The direction's inverse may be anything on an axis where the direction is 0.
    FlagWalk(const TileFlags& flags, const Vector& origin, const Vector& direction, const Vector& inverse,
             double tileSize, std::int32_t startX, std::int32_t startY, unsigned interest)
        : x_(origin.x, direction.x, inverse.x, tileSize, startX),
          y_(origin.y, direction.y, inverse.y, tileSize, startY),
          tileSize_(tileSize),
          tile_(flags.at(startX, startY)),
          strideX_(direction.x > 0 ? flags.stride() : -flags.stride()),
          strideY_(direction.y > 0 ? 1 : -1),
          stepsX_(direction.x > 0 ? tileFlag::stepFromLowX : tileFlag::stepFromHighX),
          stepsY_(direction.y > 0 ? tileFlag::stepFromLowY : tileFlag::stepFromHighY),
          interest_(interest | tileFlag::outside | tileFlag::wall),
          mask_(interest) {}

    // Goes on to the next tile that is of interest or ends at `horizon` or behind it; it may be this one.
    void runTo(double horizon) {
        while (!(*tile_ & mask_) && leaves() < horizon) advance();
    }
    void advance() {
        crossedX_ = x_.next < y_.next;
        hasMoved_ = true;
        if (crossedX_) {
            crossed_ = x_.next;
            x_.advance(tileSize_);
            tile_ += strideX_;
            mask_ = interest_ | stepsX_;
        } else {
            crossed_ = y_.next;
            y_.advance(tileSize_);
            tile_ += strideY_;
            mask_ = interest_ | stepsY_;
        }
    }

    unsigned flags() const { return *tile_; }
    // Whether there is a tile that the walk came from, and whether its slabs have other heights.
    bool hasMoved() const { return hasMoved_; }
    bool stepped() const { return hasMoved_ && (*tile_ & (crossedX_ ? stepsX_ : stepsY_)) != 0; }
    std::int32_t x() const { return x_.tile(); }
    std::int32_t y() const { return y_.tile(); }
    std::int32_t leftX() const { return crossedX_ ? x_.tileBefore() : x_.tile(); }
    std::int32_t leftY() const { return crossedX_ ? y_.tile() : y_.tileBefore(); }
    double entered() const { return crossed_ > 0 ? crossed_ : 0; }
    double leaves() const { return x_.next < y_.next ? x_.next : y_.next; }
    bool crossedX() const { return crossedX_; }
    double boundary() const { return (crossedX_ ? x_.lineBefore() : y_.lineBefore()) * tileSize_; }

private:
    struct Axis {
        Axis(double originOnAxis, double direction, double inverseOnAxis, double tileSize, std::int32_t tile)
            : origin(originOnAxis), inverse(inverseOnAxis) {
            const bool up = direction > 0;
            line = static_cast<double>(tile) + (up ? 1 : 0);
            lineStep = up ? 1 : -1;
            next = direction == 0 ? std::numeric_limits<double>::infinity()
                                  : (line * tileSize - origin) * inverse;
        }
        void advance(double tileSize) {
            line += lineStep;
            next = (line * tileSize - origin) * inverse;
        }
        double lineBefore() const { return line - lineStep; }
        std::int32_t tile() const { return static_cast<std::int32_t>(lineStep > 0 ? line - 1 : line); }
        std::int32_t tileBefore() const {
            return static_cast<std::int32_t>(lineStep > 0 ? line - 2 : line + 1);
        }

        double line;  // the next boundary, counted in tiles
        double lineStep;
        double origin;
        double inverse;
        double next;  // distance of that boundary
    };

    Axis x_;
    Axis y_;
    double tileSize_;
    const std::uint16_t* tile_;
    std::ptrdiff_t strideX_;
    std::ptrdiff_t strideY_;
    unsigned stepsX_;
    unsigned stepsY_;
    unsigned interest_;
    unsigned mask_;
    double crossed_ = 0;
    bool crossedX_ = false;
    bool hasMoved_ = false;
};

}  // namespace kelmora
