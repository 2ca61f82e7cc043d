#pragma once

#include "plush/scene/render_scene.h"

namespace kelmora {

// Whether a wall, a slab or the step between two slabs stands between the points. The walk starts in the
// given tile, from which `from` was seen; it need not lie quite inside. Beyond the map nothing stands.
bool isObstructed(const RenderScene& scene, const Vector& from, const Vector& to, std::int32_t startX,
                  std::int32_t startY);

// Points that are too near each other see each other, and so do those that are no places.
inline bool mayBeObstructed(const Vector& way) {
    constexpr double shortest = 0.0001;
    const double squared = dot(way, way);
    return squared >= shortest * shortest && way.isFinite();
}

// Whether the steps between two neighbouring tiles stand at this height.
bool obstructsStep(const RenderScene& scene, const TileCell& cell, const TileCell& left, double z);

}  // namespace kelmora
