#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "plush/scene/ray_surface.h"

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

    RayUnderWay ray(const Vector& eye, std::size_t i, bool mayReflect) const {
        RayUnderWay one;
        one.origin = eye;
        one.direction = {x[i], y[i], z[i]};
        one.inverse = {inverseX[i], inverseY[i], inverseZ[i]};
        one.fogMultiplier = fogMultiplier[i];
        one.mayReflect = mayReflect;
        return one;
    }
    void setFog(std::size_t i) { distance[i] = HUGE_VAL; }
    void setHit(std::size_t i, const unsigned char* hitTexel, double hitDistance, const Vec3& light) {
        std::memcpy(&texel[i], hitTexel, 4);
        distance[i] = hitDistance;
        red[i] = light.x;
        green[i] = light.y;
        blue[i] = light.z;
    }
};

// The places of a picture's columns in whole runs, from the place of each.
template <typename PlaceOf>
std::vector<double> columnsInRuns(std::int32_t columns, const PlaceOf& placeOf) {
    std::vector<double> places;
    for (std::int32_t column = 0; column < columns; ++column) places.push_back(placeOf(column));
    places.resize((places.size() + rayRunLength - 1) / rayRunLength * rayRunLength, 0);
    return places;
}

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
