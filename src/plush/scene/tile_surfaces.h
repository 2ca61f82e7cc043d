#pragma once

#include <algorithm>

#include "plush/scene/ray_surface.h"
#include "plush/scene/tile_walk.h"

// The surfaces of one tile on a ray's way. A candidate is a surface that the ray meets there.
namespace kelmora {

// How far outside its tile a surface may be met, so that rays through an edge miss nothing.
constexpr double tileMargin = 0.0001;
// Steps lower than this are not seen.
constexpr double lowestStep = 0.001;

// The part of a ray inside a tile, and the tile that it came from, null at the start.
struct TileVisit {
    const TileCell& cell;
    const TileCell* left;
    std::int32_t x;
    std::int32_t y;
    std::int32_t leftX;
    std::int32_t leftY;
    double enters;
    double leaves;
    bool acrossX;
    double boundary;
};

// Position along a tile's boundary that the ray crosses, 0 to 1.
inline double alongBoundary(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit) {
    return visit.acrossX ? (ray.origin.y + visit.enters * ray.direction.y) * scene.inverseTileSize - visit.y
                         : (ray.origin.x + visit.enters * ray.direction.x) * scene.inverseTileSize - visit.x;
}

inline SurfaceHit wallHit(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                          const SceneTexture* texture) {
    const double z = ray.origin.z + visit.enters * ray.direction.z;
    return {SurfaceKind::Wall,
            visit.acrossX,
            visit.enters,
            visit.boundary,
            texture,
            alongBoundary(scene, ray, visit),
            (scene.tileSize - z) * scene.inverseTileSize,
            nullptr,
            visit.leftX,
            visit.leftY,
            visit.leftX,
            visit.leftY};
}

// The face of a wall tile; it has no end in height, and its texture starts anew at each roof height.
inline bool wallCandidate(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                          SurfaceHit& hit) {
    const SceneTexture* texture = visit.left ? scene.texture(visit.cell.wall) : nullptr;
    if (!texture) return false;
    hit = wallHit(scene, ray, visit, texture);
    return true;
}

inline bool isInTile(const TileVisit& visit, double slab) {
    return slab > 0 && slab >= visit.enters - tileMargin && slab <= visit.leaves + tileMargin;
}

inline SurfaceHit slabHit(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                          SurfaceKind kind, const SceneTexture* texture, double height, double distance) {
    return {kind,
            false,
            distance,
            height,
            texture,
            (ray.origin.x + distance * ray.direction.x) * scene.inverseTileSize - visit.x,
            (ray.origin.y + distance * ray.direction.y) * scene.inverseTileSize - visit.y,
            nullptr,
            visit.x,
            visit.y,
            visit.x,
            visit.y};
}

// The underside of a roof or the top of a floor.
inline bool slabCandidate(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                          SurfaceKind kind, SurfaceHit& hit) {
    const bool isRoof = kind == SurfaceKind::RoofUnderside;
    const SceneTexture* texture = scene.texture(isRoof ? visit.cell.roof : visit.cell.floor);
    if (!texture) return false;
    const double height = isRoof ? scene.roofHeight(visit.cell) : scene.floorHeight(visit.cell);
    const double distance = slabDistance(ray, height);
    if (!isInTile(visit, distance)) return false;
    hit = slabHit(scene, ray, visit, kind, texture, height, distance);
    return true;
}

// The upright face between slabs of different heights in two neighbouring tiles. It bears the texture of the
// tile that is entered if that has the slab.
inline bool stepCandidate(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                          SurfaceKind kind, SurfaceHit& hit) {
    if (!visit.left) return false;
    const bool isRoof = kind == SurfaceKind::RoofStep;
    const std::int32_t own = isRoof ? visit.cell.roof : visit.cell.floor;
    const SceneTexture* texture = scene.texture(own > 0  ? own
                                                : isRoof ? visit.left->roof
                                                         : visit.left->floor);
    if (!texture) return false;
    const double one = isRoof ? scene.roofHeight(visit.cell) : scene.floorHeight(visit.cell);
    const double other = isRoof ? scene.roofHeight(*visit.left) : scene.floorHeight(*visit.left);
    const double top = std::max(one, other);
    const double bottom = std::min(one, other);
    const double z = ray.origin.z + visit.enters * ray.direction.z;
    if (!(top - bottom >= lowestStep && z >= bottom && z <= top)) return false;
    constexpr double lastTexel = 1 - 1e-9;
    hit = {kind,
           visit.acrossX,
           visit.enters,
           visit.boundary,
           texture,
           alongBoundary(scene, ray, visit),
           std::min((top - z) / (top - bottom), lastTexel),
           nullptr,
           visit.x,
           visit.y,
           visit.leftX,
           visit.leftY};
    return true;
}

// The place of the last quad that a ray met; it goes on strictly behind it, quads at one distance in their
// order.
struct LastQuad {
    double distance = 0;
    std::int64_t index = -1;
};

// The part of a ray from `first` to `last` inside a box; the span is empty where it ends before it begins.
// That of a box around others contains theirs to the last bit.
struct RaySpan {
    double first;
    double last;

    bool isEmpty() const { return first > last; }
    bool contains(double distance) const {
        return distance >= first - tileMargin && distance <= last + tileMargin;
    }
    void cut(double origin, double inverse, float low, float high) {
        const double one = (static_cast<double>(low) - origin) * inverse;
        const double other = (static_cast<double>(high) - origin) * inverse;
        first = std::max(first, std::min(one, other));
        last = std::min(last, std::max(one, other));
    }
};

inline RaySpan spanInBox(const RayUnderWay& ray, RaySpan span, const QuadBox& box) {
    span.cut(ray.origin.z, ray.inverse.z, box.minZ, box.maxZ);
    span.cut(ray.origin.x, ray.inverse.x, box.minX, box.maxX);
    span.cut(ray.origin.y, ray.inverse.y, box.minY, box.maxY);
    return span;
}

inline SurfaceHit quadSurface(const RenderScene& scene, const Quad& quad, const QuadHit& met, std::int32_t x,
                              std::int32_t y) {
    constexpr double lastTexel = 1 - 1e-9;
    return {SurfaceKind::Quad,
            false,
            met.distance,
            0,
            scene.texture(quad.texture),
            std::clamp(met.u, 0.0, lastTexel),
            std::clamp(met.v, 0.0, lastTexel),
            &quad,
            x,
            y,
            x,
            y};
}

// The part of a ray on which quads of the tile are met.
inline RaySpan quadSpan(const TileVisit& visit) {
    return {visit.enters - tileMargin, visit.leaves + tileMargin};
}

// Whether the ray meets a quad inside its box and on the span, behind the last one.
inline bool meetsQuad(const RayUnderWay& ray, const RaySpan& span, const Quad& quad, std::uint32_t index,
                      const LastQuad& last, QuadHit& met) {
    const RaySpan inside = spanInBox(ray, span, quad.box);
    return !inside.isEmpty() &&
           rayQuadIntersect(ray.origin, ray.direction, quad, last.distance, index > last.index, met) &&
           inside.contains(met.distance) && met.distance >= span.first && met.distance <= span.last;
}

inline bool quadCandidate(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                          std::uint32_t index, const LastQuad& last, SurfaceHit& hit) {
    const Quad& quad = scene.quads[index];
    QuadHit met;
    if (!scene.texture(quad.texture) || !meetsQuad(ray, quadSpan(visit), quad, index, last, met))
        return false;
    hit = quadSurface(scene, quad, met, visit.x, visit.y);
    return true;
}

}  // namespace kelmora
