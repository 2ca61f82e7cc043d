#include "plush/scene/ray_surface.h"

#include <algorithm>
#include <cmath>

namespace kelmora {
namespace {

// How far a reflected ray starts from its mirror.
constexpr double reflectionNudge = 0.001;

double withoutZero(double component) {
    return std::fabs(component) < leastComponent ? std::copysign(leastComponent, component) : component;
}

Vec3 colourOf(unsigned char red, unsigned char green, unsigned char blue) {
    return {static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue)};
}

Vec3 wholeColour(const Vec3& colour) {
    return colourOf(byteOf(colour.x), byteOf(colour.y), byteOf(colour.z));
}

Vector normalOf(const SurfaceHit& hit) {
    if (hit.kind == SurfaceKind::Quad) return Vector(hit.quad->normal);
    if (hit.kind == SurfaceKind::Wall) return hit.acrossX ? Vector(1, 0, 0) : Vector(0, 1, 0);
    return {0, 0, 1};
}

// 0 where nothing is mirrored.
float mirrorWeight(const RenderScene& scene, const SurfaceHit& hit) {
    const SceneTexture& texture = *hit.texture;
    if (!texture.reflectPixels) return 0;
    const unsigned char* mirror =
        texelAt(texture.reflectPixels, texture.reflectWidth, texture.reflectHeight, hit.u, hit.v);
    if (mirror[0] == 0 && mirror[1] == 0 && mirror[2] == 0) return 0;
    const auto weight = static_cast<float>(scene.reflection * mirror[3] / 255);
    return weight > 0 ? std::min(weight, 1.0f) : 0;
}

void addReflection(const RayUnderWay& ray, const SurfaceHit& hit, const unsigned char* texel, float weight,
                   RayScratch& scratch) {
    const Vector normal = normalOf(hit);
    const Vector reflected = normalised(ray.direction - normal * (2 * dot(ray.direction, normal)));
    const double distance = ray.travelled + hit.distance;
    scratch.reflections.push_back({{positionOf(ray, hit) + reflected * reflectionNudge, reflected, distance,
                                    hit.reflectX, hit.reflectY},
                                   scratch.layers.size()});
    scratch.layers.push_back({texel[0], texel[1], texel[2], true, weight, static_cast<float>(distance)});
}

}  // namespace

RayUnderWay::RayUnderWay(const Ray& ray, double fogMultiplierOfPixel, bool mayReflectFurther)
    : origin(ray.origin),
      direction(withoutZero(ray.direction.x), withoutZero(ray.direction.y), withoutZero(ray.direction.z)),
      inverse(1 / direction.x, 1 / direction.y, 1 / direction.z),
      travelled(ray.travelled),
      fogMultiplier(fogMultiplierOfPixel),
      mayReflect(mayReflectFurther) {}

Vector positionOf(const RayUnderWay& ray, const SurfaceHit& hit) {
    Vector position = ray.at(hit.distance);
    switch (hit.kind) {
        case SurfaceKind::Quad:
            break;
        case SurfaceKind::RoofUnderside:
        case SurfaceKind::FloorTop:
            position.z = hit.plane;
            break;
        default:
            (hit.acrossX ? position.x : position.y) = hit.plane;
            break;
    }
    return position;
}

const unsigned char* takeLayers(const RenderScene& scene, const RayUnderWay& ray, const SurfaceHit& hit,
                                const unsigned char* texel, RayScratch& scratch, int& mirroredRaysLeft) {
    if (texel[3] == 0) return nullptr;
    if (texel[3] < 255)
        scratch.layers.push_back({texel[0], texel[1], texel[2], false, static_cast<float>(texel[3]) / 255,
                                  static_cast<float>(ray.travelled + hit.distance)});
    if (ray.mayReflect && mirroredRaysLeft > 0)
        if (const float weight = mirrorWeight(scene, hit); weight > 0) {
            --mirroredRaysLeft;
            addReflection(ray, hit, texel, weight, scratch);
            scratch.isCovered = weight == 1;
        }
    return texel[3] == 255 || scratch.isCovered ? texel : nullptr;
}

float fogAmount(const RenderScene& scene, double fogMultiplier, double distance) {
    const auto amount = static_cast<float>(fogMultiplier * distance / scene.renderDistance);
    return amount < 1 ? amount : 1;
}

Vec3 shadedColour(const RenderScene& scene, double fogMultiplier, const unsigned char* texel,
                  const Vec3& light, double distance) {
    return foggedColour(scene.fog, fogAmount(scene, fogMultiplier, distance), texel, light);
}

Vec3 foggedColour(const Vec3& fog, float amount, const unsigned char* texel, const Vec3& light) {
    const Vec3 surface = wholeColour({light.x * texel[0], light.y * texel[1], light.z * texel[2]});
    return fog * amount + surface * (1 - amount);
}

Vec3 foggedTexel(const RenderScene& scene, double fogMultiplier, const unsigned char* texel,
                 double distance) {
    const float fog = fogAmount(scene, fogMultiplier, distance);
    return wholeColour(colourOf(texel[0], texel[1], texel[2]) * (1 - fog) + scene.fog * fog);
}

Vec3 composeLayers(const RenderScene& scene, double fogMultiplier,
                   const std::vector<TransparentLayer>& layers, Vec3 colour) {
    for (std::size_t i = layers.size(); i-- > 0;) {
        const TransparentLayer& layer = layers[i];
        const unsigned char texel[] = {layer.red, layer.green, layer.blue};
        const Vec3 own = layer.isFinal
                             ? colourOf(layer.red, layer.green, layer.blue)
                             : foggedTexel(scene, fogMultiplier, texel, static_cast<double>(layer.distance));
        colour = wholeColour(own * layer.weight + colour * (1 - layer.weight));
    }
    return colour;
}

}  // namespace kelmora
