#pragma once

#include <cstddef>
#include <cstdint>

#include "plush/scene/render_scene.h"

// Loops over neighbouring rays of a picture's row. Each set gives the same bits as any other.
namespace kelmora {

constexpr std::size_t rayRunLength = 64;

// Some rays from the eye, next to each other, and what they saw.
struct RayRun {
    template <typename Value>
    using Each = Value[rayRunLength];

    // Directions, whose components near 0 are a millionth, and 1 / each component.
    alignas(32) Each<double> x;
    alignas(32) Each<double> y;
    alignas(32) Each<double> z;
    alignas(32) Each<double> inverseX;
    alignas(32) Each<double> inverseY;
    alignas(32) Each<double> inverseZ;
    alignas(32) Each<double> fogMultiplier;
    // The distances of the floor's and the roof's plane in the eye's tile.
    alignas(32) Each<double> floor;
    alignas(32) Each<double> roof;
    // Texel, distance and light of the hits; an infinite distance is fog.
    alignas(32) Each<double> distance;
    alignas(32) Each<float> red;
    alignas(32) Each<float> green;
    alignas(32) Each<float> blue;
    alignas(32) Each<std::uint32_t> texel;
};

struct RayKernels {
    // Aims the rays through v and the first of `u`, a whole run of them. All that the camera has is finite,
    // and so are the squares of its directions.
    void (*aim)(const RenderScene& scene, const double* u, double v, double floorHeight, double roofHeight,
                RayRun& run);
    // The pixels of a whole run.
    void (*shade)(const RenderScene& scene, const RayRun& run, unsigned char* pixels);
};

extern const RayKernels plainRayKernels;
#if defined(__SSE2__)
extern const RayKernels sse2RayKernels;
extern const RayKernels avx2RayKernels;  // only where hasAvx2()
#endif

// The fastest set for this processor.
const RayKernels& rayKernels();

}  // namespace kelmora
