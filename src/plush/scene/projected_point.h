#pragma once

#include "plush/scene/render_scene.h"

namespace kelmora {

// Faces are cut off at this distance ahead of the eye.
constexpr double nearPlane = 1e-6;

// A point of a picture, in pixels, and how far ahead of the eye it lies.
struct ProjectedPoint {
    double x;
    double y;
    double depth;
};
// False for points that are not in front of the eye.
[[nodiscard]] bool projectPoint(const Camera& camera, double width, double height, const Vector& point,
                                ProjectedPoint& projected);

}  // namespace kelmora
