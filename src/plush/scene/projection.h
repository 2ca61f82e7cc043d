#pragma once

#include <cstdint>

#include "plush/scene/render_scene.h"

namespace kelmora {

// Draws the scene by polygons with a depth buffer, a colour for each pixel whatever the accuracy. Opaque
// scenes look as ray casting shows them with accuracy 1; nothing is mirrored, and partly clear faces are
// mixed whole, far ones first.
void projectScene(const Scene& scene, PlushImage& output, std::int32_t workers);

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
