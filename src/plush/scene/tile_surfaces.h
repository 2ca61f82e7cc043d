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

// The face of a wall tile; it has no end in height, and its texture starts anew at each roof height.
inline bool wallCandidate(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                          SurfaceHit& hit) {
    if (!visit.left) return false;
    const SceneTexture* texture = scene.texture(visit.cell.wall);
    if (!texture) return false;
    const double z = ray.origin.z + visit.enters * ray.direction.z;
    hit = {SurfaceKind::Wall,
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
    return true;
}

// The underside of a roof or the top of a floor.
inline bool slabCandidate(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                          SurfaceKind kind, SurfaceHit& hit) {
    const bool isRoof = kind == SurfaceKind::RoofUnderside;
    const SceneTexture* texture = scene.texture(isRoof ? visit.cell.roof : visit.cell.floor);
    if (!texture) return false;
    const double height = isRoof ? scene.roofHeight(visit.cell) : scene.floorHeight(visit.cell);
    const double distance = (height - ray.origin.z) / ray.direction.z;
    if (!(distance > 0 && distance >= visit.enters - tileMargin && distance <= visit.leaves + tileMargin))
        return false;
    hit = {kind,
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

inline bool isOutsideBox(const Quad& quad, const RayUnderWay& ray, double enters, double leaves) {
    const auto misses = [&](double origin, double direction, float low, float high) {
        const double one = origin + enters * direction;
        const double other = origin + leaves * direction;
        return std::max(one, other) < static_cast<double>(low) ||
               std::min(one, other) > static_cast<double>(high);
    };
    return misses(ray.origin.z, ray.direction.z, quad.minZ, quad.maxZ) ||
           misses(ray.origin.x, ray.direction.x, quad.minX, quad.maxX) ||
           misses(ray.origin.y, ray.direction.y, quad.minY, quad.maxY);
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

inline bool quadCandidate(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                          std::uint32_t index, const LastQuad& last, SurfaceHit& hit) {
    const Quad& quad = scene.quads[index];
    const double enters = visit.enters - tileMargin;
    const double leaves = visit.leaves + tileMargin;
    if (isOutsideBox(quad, ray, enters, leaves)) return false;
    if (!scene.texture(quad.texture)) return false;
    QuadHit met;
    if (!rayQuadIntersect(ray.origin, ray.direction, quad, last.distance, index > last.index, met) ||
        met.distance < enters || met.distance > leaves)
        return false;
    hit = quadSurface(scene, quad, met, visit.x, visit.y);
    return true;
}

}  // namespace kelmora
