#pragma once

#include "plush/scene/ray_surface.h"

namespace kelmora {

// Traces rays in the plainest way: every light, every candidate of every tile.
class PlainTracer {
public:
    explicit PlainTracer(const RenderScene& scene) : scene_(scene) {}

    // The colour that a ray sees, each channel 0 to 255. The scratch has ray depth + 1 entries.
    Vec3 trace(const Ray& ray, int depth, double fogMultiplier, RayScratch* scratch) const;

private:
    const RenderScene& scene_;
};

}  // namespace kelmora
