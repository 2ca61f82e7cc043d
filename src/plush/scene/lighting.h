#pragma once

#include "plush/scene/ray_surface.h"

namespace kelmora {

// The light that falls on the point of a hit, 1 for full: the least there is, and that of each light that
// reaches the point unobstructed, up to the most there may be.
Vec3 lightAt(const RenderScene& scene, const Vector& position, const SurfaceHit& hit);

// Where the way to a light starts, off the surface that it shines on.
constexpr double lightNudge = 1e-6;

// What a light gives at a distance inside its radius.
inline Vec3 lightFrom(const LightSource& light, double distance) {
    return Vec3{light.r, light.g, light.b} * (1 - static_cast<float>(distance) / light.radius);
}

}  // namespace kelmora
