#include "plush/scene/ray_kernels.h"

#include <algorithm>

#include "base/cpu_features.h"
#include "base/saturating.h"

namespace kelmora {
namespace {

void aim(const RenderScene& scene, const double* u, double v, double floorHeight, double roofHeight,
         RayRun& run) {
    for (std::size_t i = 0; i < rayRunLength; ++i) {
        const Ray ray{scene.camera.eye, normalised(scene.camera.directionAt(u[i], v))};
        const RayUnderWay underWay(ray, fogMultiplierAt(u[i], v), false);
        run.x[i] = underWay.direction.x;
        run.y[i] = underWay.direction.y;
        run.z[i] = underWay.direction.z;
        run.inverseX[i] = underWay.inverse.x;
        run.inverseY[i] = underWay.inverse.y;
        run.inverseZ[i] = underWay.inverse.z;
        run.fogMultiplier[i] = underWay.fogMultiplier;
        run.floor[i] = slabDistance(underWay, floorHeight);
        run.roof[i] = slabDistance(underWay, roofHeight);
    }
}

void shade(const RenderScene& scene, const RayRun& run, unsigned char* pixels) {
    for (std::size_t i = 0; i < rayRunLength; ++i) {
        unsigned char texel[4];
        std::memcpy(texel, &run.texel[i], 4);
        const Vec3 colour = shadedColour(scene, run.fogMultiplier[i], texel,
                                         {run.red[i], run.green[i], run.blue[i]}, run.distance[i]);
        const unsigned char pixel[] = {byteOf(colour.x), byteOf(colour.y), byteOf(colour.z), 255};
        std::memcpy(pixels + i * 4, pixel, 4);
    }
}

bool cover(double base, double slope, const double* u, std::size_t count, std::uint32_t number,
           double* nearness, std::uint32_t* numbers) {
    bool isSeen = false;
    for (std::size_t i = 0; i < count; ++i) {
        const double own = base + slope * u[i];
        if (!(own > nearness[i] * sameDepth)) continue;
        nearness[i] = own;
        numbers[i] = number;
        isSeen = true;
    }
    return isSeen;
}

double roughRoot(double value) {
    return static_cast<double>(std::sqrt(static_cast<float>(value)));
}

std::size_t texelNumber(double coordinate, std::int32_t count) {
    const double part = coordinate - saturatingInt(coordinate);
    const double texel = (part < 0 ? part + 1 : part) * count;
    return static_cast<std::size_t>(std::clamp(saturatingInt(texel), 0, count - 1));
}

void map(const Camera& camera, const FaceRow& face, const double* u, const double* nearness,
         std::size_t first, std::size_t count, RayRun& run) {
    const double downwards = face.v * camera.halfHeight;
    const SceneTexture& texture = *face.texture;
    for (std::size_t i = 0; i < count; ++i) {
        const double ahead = 1 / nearness[i];
        const double aside = u[i] * camera.halfWidth;
        const auto at = [&](const FaceRow::Coordinate& coordinate) {
            return coordinate.start + (coordinate.middle + coordinate.slope * u[i]) * ahead;
        };
        const std::size_t column = texelNumber(at(face.along), texture.width);
        const std::size_t row = texelNumber(at(face.down), texture.height);
        std::memcpy(&run.texel[first + i],
                    texture.pixels + (row * static_cast<std::size_t>(texture.width) + column) * 4, 4);
        run.distance[first + i] = ahead * roughRoot(1 + downwards * downwards + aside * aside);
        run.fogMultiplier[first + i] =
            roughRoot(u[i] * u[i] + face.v * face.v) * (fogTowardsCorner * fogOfCorner) + 1;
    }
}

}  // namespace

const RayKernels plainRayKernels{aim, shade, cover, map};

const RayKernels& rayKernels() {
#if defined(KELMORA_X86)
    return hasAvx2() ? avx2RayKernels : sse2RayKernels;
#else
    return plainRayKernels;
#endif
}

}  // namespace kelmora
