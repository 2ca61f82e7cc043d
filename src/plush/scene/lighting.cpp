#include "plush/scene/lighting.h"

#include <algorithm>
#include <cmath>

#include "plush/scene/obstruction.h"

namespace kelmora {

Vec3 lightAt(const RenderScene& scene, const Vector& position, const SurfaceHit& hit) {
    Vec3 sum{scene.lightMinimum, scene.lightMinimum, scene.lightMinimum};
    for (const LightSource& light : scene.lights) {
        const Vector source(static_cast<double>(light.x), static_cast<double>(light.y),
                            static_cast<double>(light.z));
        const double radius = static_cast<double>(light.radius);
        const Vector way = source - position;
        const double squared = dot(way, way);
        if (!(squared < radius * radius)) continue;
        const Vector from = position + normalised(way) * lightNudge;
        if (isObstructed(scene, from, source, hit.lightX, hit.lightY)) continue;
        sum = sum + lightFrom(light, std::sqrt(squared));
    }
    return {std::min(sum.x, scene.lightMaximum), std::min(sum.y, scene.lightMaximum),
            std::min(sum.z, scene.lightMaximum)};
}

}  // namespace kelmora
