#pragma once

#include "plush/scene/render_scene.h"

namespace kelmora {

// Tells in which tiles nothing can stand between a point and any place at a height between floor and roof: no
// wall, and slabs of the same heights all the way. It may say no where it could say yes.
class OpenView {
public:
    OpenView(const RenderScene& scene, const Vector& point);

    bool isOpen(std::int32_t tileX, std::int32_t tileY) const;
    // Those of all open tiles.
    double floorHeight() const { return floor_; }
    double roofHeight() const { return roof_; }

private:
    bool isFree(std::int32_t x, std::int32_t firstY, std::int32_t lastY) const;

    const RenderScene& scene_;
    Vector point_;
    double slack_;  // more than all that rounding may move a walk
    std::int32_t tileX_;
    std::int32_t tileY_;
    const TileCell* own_ = nullptr;  // null where no tile is open
    double floor_ = 0;
    double roof_ = 0;
};

}  // namespace kelmora
