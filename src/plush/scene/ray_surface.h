#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "plush/scene/render_scene.h"

// What a ray does at the surfaces that it meets, however they were found.
namespace kelmora {

// A colour in front of what a ray meets behind it.
struct TransparentLayer {
    unsigned char red;
    unsigned char green;
    unsigned char blue;
    bool isFinal;  // takes no fog
    float weight;  // 0 to 1
    float distance;
};

// A ray to trace when the one that it comes from is done. The tile is where its walk starts.
struct Ray {
    Vector origin;
    Vector direction;
    double travelled = 0;
    std::int32_t tileX = 0;
    std::int32_t tileY = 0;
};

struct ReflectionEvent {
    Ray ray;
    std::size_t layer;  // which receives the result
};

// Work space for the rays of one depth.
struct RayScratch {
    std::vector<TransparentLayer> layers;
    std::vector<ReflectionEvent> reflections;
    bool isCovered = false;  // by a mirror that shows nothing of what lies behind it

    RayScratch() {
        layers.reserve(8);
        reflections.reserve(2);
    }
    void clear() {
        layers.clear();
        reflections.clear();
        isCovered = false;
    }
};

// Rays that one pixel may spend on reflections. Panes that mirror each other would take the sixth power of
// their number; when the rays are spent, surfaces do not mirror any more.
constexpr int mirroredRaysOfPixel = 1000;

// Work space of one worker.
struct TraceWork {
    std::array<RayScratch, deepestReflection + 1> depths;
    int mirroredRaysLeft = 0;
};

enum class SurfaceKind { Wall, RoofUnderside, FloorTop, RoofStep, FloorStep, Quad };

// A surface on a ray's way.
struct SurfaceHit {
    SurfaceKind kind;
    bool acrossX;     // of a wall or a step: its plane is one of constant x
    double distance;  // in lengths of the direction
    double plane;     // the exact coordinate: x or y of a wall or a step, z of a slab
    const SceneTexture* texture;
    double u;
    double v;
    const Quad* quad = nullptr;
    // Tiles where a reflection and the light's way to the hit start.
    std::int32_t reflectX = 0;
    std::int32_t reflectY = 0;
    std::int32_t lightX = 0;
    std::int32_t lightY = 0;
};

// The least size of a component of a direction.
constexpr double leastComponent = 1e-6;

// A ray under way. Components of the direction near 0 are a millionth, so that every walk goes on.
struct RayUnderWay {
    RayUnderWay() = default;
    RayUnderWay(const Ray& ray, double fogMultiplierOfPixel, bool mayReflectFurther);

    Vector at(double distance) const { return origin + direction * distance; }

    Vector origin;
    Vector direction;
    Vector inverse;  // 1 / each component of the direction
    double travelled = 0;
    double fogMultiplier = 1;
    bool mayReflect = false;
};

// Where a ray meets a plane of this height; it may lie behind the ray.
inline double slabDistance(const RayUnderWay& ray, double height) {
    return (height - ray.origin.z) / ray.direction.z;
}

// The point of a hit, exactly on its plane.
Vector positionOf(const RayUnderWay& ray, const SurfaceHit& hit);

// Takes a texel that is partly clear or may mirror; as `takeSurface`.
const unsigned char* takeLayers(const RenderScene& scene, const RayUnderWay& ray, const SurfaceHit& hit,
                                const unsigned char* texel, RayScratch& scratch, int& mirroredRaysLeft);

// Takes a surface: a partly clear one becomes a layer, a mirroring one a reflection as well. Null for
// surfaces that the ray goes through, else the texel that ends it; where the scratch is covered, its colour
// does not matter.
inline const unsigned char* takeSurface(const RenderScene& scene, const RayUnderWay& ray,
                                        const SurfaceHit& hit, RayScratch& scratch, int& mirroredRaysLeft) {
    const SceneTexture& texture = *hit.texture;
    const unsigned char* texel = texelAt(texture.pixels, texture.width, texture.height, hit.u, hit.v);
    if (texel[3] == 255 && !(ray.mayReflect && texture.reflectPixels)) return texel;
    return takeLayers(scene, ray, hit, texel, scratch, mirroredRaysLeft);
}

// The share of fog in the colour of a pixel, 0 to 1; 1 for what is no number.
float fogAmount(const RenderScene& scene, double fogMultiplier, double distance);

// A lit texel behind fog. Light is 1 for full.
Vec3 foggedColour(const Vec3& fog, float amount, const unsigned char* texel, const Vec3& light);
Vec3 shadedColour(const RenderScene& scene, double fogMultiplier, const unsigned char* texel,
                  const Vec3& light, double distance);

// A texel's own colour behind fog, in whole numbers: what a layer shows.
Vec3 foggedTexel(const RenderScene& scene, double fogMultiplier, const unsigned char* texel, double distance);

// The layers over what lies behind them.
Vec3 composeLayers(const RenderScene& scene, double fogMultiplier,
                   const std::vector<TransparentLayer>& layers, Vec3 colour);

// Truncated, and held to a byte.
inline unsigned char byteOf(float channel) {
    return channel >= 255 ? 255 : channel > 0 ? static_cast<unsigned char>(channel) : 0;
}

}  // namespace kelmora
