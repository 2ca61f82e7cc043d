#include "plush/scene/fast_tracer.h"

#include "plush/scene/quad_search.h"

namespace kelmora {
namespace {

// Of one tile, each taken once.
constexpr unsigned floorTop = 1;
constexpr unsigned roofUnderside = 2;
constexpr unsigned wallFace = 4;
constexpr unsigned floorStep = 8;
constexpr unsigned roofStep = 16;

// Leaves room for every rounding on the way to a distance.
constexpr double safely = 1 - 1e-9;

}  // namespace

FastTracer::Slabs FastTracer::slabsOf(const RayUnderWay& ray, const TileCell& cell) const {
    return {slabDistance(ray, scene_.floorHeight(cell)), slabDistance(ray, scene_.roofHeight(cell))};
}

// Tiles that are entered at `entered` or later and end before the horizon hold no slab and are in sight.
double FastTracer::horizonFrom(const RayUnderWay& ray, const Slabs& slabs, double entered) const {
    double horizon = scene_.renderDistance * safely - ray.travelled;
    const double passed = std::max(entered * safely - 2 * tileMargin, 0.0);
    for (const double slab : {slabs.floor, slabs.roof})
        if (slab > passed) horizon = std::min(horizon, (slab - 2 * tileMargin) * safely);
    return horizon;
}

// The first of the surfaces but quads that are not taken yet, 0 if there is none. At one distance they come
// in the order of their numbers.
unsigned FastTracer::nearestFixed(const RayUnderWay& ray, const TileWay& way, const Slabs& slabs,
                                  unsigned taken, SurfaceHit& hit) const {
    const TileVisit& visit = way.visit;
    const SceneTexture* texture = nullptr;
    double distance = HUGE_VAL;
    unsigned found = 0;
    const auto offerSlab = [&](unsigned flag, unsigned own, double slab, std::int32_t number) {
        if (!(way.flags & flag) || (taken & own) || !isInTile(visit, slab) || slab >= distance) return;
        const SceneTexture* offered = scene_.texture(number);
        if (!offered) return;
        texture = offered;
        distance = slab;
        found = own;
    };
    offerSlab(tileFlag::floor, floorTop, slabs.floor, visit.cell.floor);
    offerSlab(tileFlag::roof, roofUnderside, slabs.roof, visit.cell.roof);
    if (visit.left && visit.enters < distance) {
        if (!(taken & wallFace) && wallCandidate(scene_, ray, visit, hit)) return wallFace;
        if (way.stepped) {
            if (!(taken & floorStep) && stepCandidate(scene_, ray, visit, SurfaceKind::FloorStep, hit))
                return floorStep;
            if (!(taken & roofStep) && stepCandidate(scene_, ray, visit, SurfaceKind::RoofStep, hit))
                return roofStep;
        }
    }
    if (found == floorTop)
        hit = slabHit(scene_, ray, visit, SurfaceKind::FloorTop, texture, scene_.floorHeight(visit.cell),
                      distance);
    else if (found == roofUnderside)
        hit = slabHit(scene_, ray, visit, SurfaceKind::RoofUnderside, texture, scene_.roofHeight(visit.cell),
                      distance);
    return found;
}

// Takes the surfaces of a tile until one ends the ray; null when none does.
const unsigned char* FastTracer::crossTile(const RayUnderWay& ray, const TileWay& way, const Slabs& slabs,
                                           LastQuad& last, RayScratch& scratch, int& mirroredRaysLeft,
                                           SurfaceHit& hit) const {
    unsigned taken = 0;
    for (;;) {
        const unsigned fixed = nearestFixed(ray, way, slabs, taken, hit);
        bool isQuad = false;
        if (way.flags & tileFlag::quads) {
            QuadSearch search(scene_, ray, quadSpan(way.visit), last, fixed ? hit.distance : HUGE_VAL);
            search.tryList(scene_.quadGrid.listAt(way.index));
            search.tryList(scene_.quadGrid.everywhereList());
            isQuad = search.hasFound();
            if (isQuad)
                hit =
                    quadSurface(scene_, scene_.quads[search.index()], search.met(), way.visit.x, way.visit.y);
        }
        if (!fixed && !isQuad) return nullptr;
        if (!(ray.travelled + hit.distance < scene_.renderDistance)) return nullptr;
        if (isQuad)
            last = {hit.distance, hit.quad - scene_.quads.data()};
        else
            taken |= fixed;
        if (const unsigned char* texel = takeSurface(scene_, ray, hit, scratch, mirroredRaysLeft))
            return texel;
    }
}

FastTracer::Sight FastTracer::look(const RayUnderWay& ray, std::int32_t tileX, std::int32_t tileY,
                                   const Slabs& startSlabs, RayScratch& scratch,
                                   int& mirroredRaysLeft) const {
    FlagWalk walk(scene_.flags, ray.origin, ray.direction, ray.inverse, scene_.tileSize, tileX, tileY,
                  tileFlag::quads);
    const TileMap& map = scene_.map;
    Slabs slabs = startSlabs;
    double horizon = horizonFrom(ray, slabs, 0);
    LastQuad last;
    for (;; walk.advance()) {
        walk.runTo(horizon);
        const unsigned flags = walk.flags();
        const double entered = walk.entered();
        if ((flags & tileFlag::outside) || !(ray.travelled + entered < scene_.renderDistance)) return {};
        const std::int32_t x = walk.x();
        const std::int32_t y = walk.y();
        const std::int32_t leftX = walk.leftX();
        const std::int32_t leftY = walk.leftY();
        const std::size_t index = map.find(x, y);
        const TileCell& cell = map.cell(index);
        const bool stepped = walk.stepped();
        if (stepped) slabs = slabsOf(ray, cell);
        const TileCell* left = walk.hasMoved() ? &map.cell(map.find(leftX, leftY)) : nullptr;
        const TileWay way{
            {cell, left, x, y, leftX, leftY, entered, walk.leaves(), walk.crossedX(), walk.boundary()},
            flags,
            stepped,
            index};
        SurfaceHit hit{};
        if (const unsigned char* texel = crossTile(ray, way, slabs, last, scratch, mirroredRaysLeft, hit)) {
            if (scratch.isCovered) return {};
            return {texel, ray.travelled + hit.distance, lights_.at(ray, hit)};
        }
        horizon = horizonFrom(ray, slabs, way.visit.leaves);
    }
}

Vec3 FastTracer::trace(const Ray& ray, int depth, double fogMultiplier, TraceWork& work) const {
    RayScratch& own = work.depths[static_cast<std::size_t>(depth)];
    own.clear();
    if (!ray.direction.isFinite()) return scene_.fog;
    const RayUnderWay underWay(ray, fogMultiplier, depth < scene_.rayDepth);
    const TileCell& cell = scene_.map.cell(scene_.map.find(ray.tileX, ray.tileY));
    return compose(underWay,
                   look(underWay, ray.tileX, ray.tileY, slabsOf(underWay, cell), own, work.mirroredRaysLeft),
                   depth, work);
}

Vec3 FastTracer::compose(const RayUnderWay& ray, const Sight& sight, int depth, TraceWork& work) const {
    RayScratch& own = work.depths[static_cast<std::size_t>(depth)];
    const Vec3 behind =
        sight.texel ? shadedColour(scene_, ray.fogMultiplier, sight.texel, sight.light, sight.distance)
                    : scene_.fog;
    for (const ReflectionEvent& event : own.reflections) {
        const Vec3 seen = trace(event.ray, depth + 1, ray.fogMultiplier, work);
        TransparentLayer& layer = own.layers[event.layer];
        layer.red = byteOf(seen.x);
        layer.green = byteOf(seen.y);
        layer.blue = byteOf(seen.z);
    }
    return composeLayers(scene_, ray.fogMultiplier, own.layers, behind);
}

}  // namespace kelmora
