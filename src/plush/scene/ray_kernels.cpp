#include "plush/scene/ray_kernels.h"

#include "base/cpu_features.h"

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

}  // namespace

const RayKernels plainRayKernels{aim, shade};

const RayKernels& rayKernels() {
#if defined(KELMORA_X86)
    return hasAvx2() ? avx2RayKernels : sse2RayKernels;
#else
    return plainRayKernels;
#endif
}

}  // namespace kelmora
