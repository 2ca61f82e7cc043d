#pragma once

#include "plush/scene/ray_surface.h"

namespace kelmora {

// Traces rays in the plainest way: every light, every candidate of every tile. It says what a picture is; the
// fast tracer has to give its bytes.
class PlainTracer {
public:
    explicit PlainTracer(const RenderScene& scene) : scene_(scene) {}

    // The colour that a ray sees, each channel 0 to 255.
    Vec3 trace(const Ray& ray, int depth, double fogMultiplier, TraceWork& work) const;

private:
    const RenderScene& scene_;
};

}  // namespace kelmora
