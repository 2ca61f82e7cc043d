#include "plush/scene/projected_point.h"

#include <cmath>

namespace kelmora {

bool projectPoint(const Camera& camera, double width, double height, const Vector& point,
                  ProjectedPoint& projected) {
    const Vector way = point - camera.eye;
    const double depth = dot(way, camera.forward);
    if (!(depth >= nearPlane / 2)) return false;
    const double u = dot(way, camera.right) / (depth * camera.halfWidth);
    const double v = dot(way, camera.up) / (depth * camera.halfHeight);
    projected = {(u + 1) / 2 * width, (v + 1) / 2 * height, depth};
    return std::isfinite(projected.x) && std::isfinite(projected.y);
}

}  // namespace kelmora
