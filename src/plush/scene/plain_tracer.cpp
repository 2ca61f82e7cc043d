#include "plush/scene/plain_tracer.h"

#include "plush/scene/lighting.h"
#include "plush/scene/tile_surfaces.h"

namespace kelmora {
namespace {

// The candidates of one tile, nearest first. At one distance quads come first, so that what hangs on a wall
// is seen, and walls before the steps that they hide.
class TileCandidates {
public:
    TileCandidates(const RenderScene& scene, const RayUnderWay& ray, const TileVisit& visit,
                   std::size_t cellIndex, LastQuad& last)
        : scene_(scene), ray_(ray), visit_(visit), cellIndex_(cellIndex), last_(last) {}

    bool next(SurfaceHit& nearest) {
        bool found = false;
        std::int64_t quadIndex = -1;
        int fixedIndex = -1;
        const auto offer = [&](bool met, const SurfaceHit& hit, std::int64_t quad, int fixed) {
            if (!met || (found && hit.distance > nearest.distance)) return;
            if (found && hit.distance == nearest.distance && (quad < 0 || quad > quadIndex)) return;
            if (!(ray_.travelled + hit.distance < scene_.renderDistance)) return;
            nearest = hit;
            found = true;
            quadIndex = quad;
            fixedIndex = fixed;
        };
        SurfaceHit hit{};
        for (const auto list : {scene_.quadGrid.at(cellIndex_), scene_.quadGrid.everywhere()})
            for (const std::uint32_t index : list)
                offer(quadCandidate(scene_, ray_, visit_, index, last_, hit), hit, index, -1);
        for (int i = 0; i < 5; ++i)
            if (!taken_[i]) offer(fixedCandidate(i, hit), hit, -1, i);
        if (quadIndex >= 0) last_ = {nearest.distance, quadIndex};
        if (fixedIndex >= 0) taken_[fixedIndex] = true;
        return found;
    }

private:
    bool fixedCandidate(int index, SurfaceHit& hit) const {
        switch (index) {
            case 0:
                return slabCandidate(scene_, ray_, visit_, SurfaceKind::FloorTop, hit);
            case 1:
                return slabCandidate(scene_, ray_, visit_, SurfaceKind::RoofUnderside, hit);
            case 2:
                return wallCandidate(scene_, ray_, visit_, hit);
            case 3:
                return stepCandidate(scene_, ray_, visit_, SurfaceKind::FloorStep, hit);
            default:
                return stepCandidate(scene_, ray_, visit_, SurfaceKind::RoofStep, hit);
        }
    }

    const RenderScene& scene_;
    const RayUnderWay& ray_;
    const TileVisit& visit_;
    std::size_t cellIndex_;
    LastQuad& last_;
    bool taken_[5] = {};
};

// Walks to the opaque hit, if there is one, and returns its colour, else that of fog.
Vec3 walkToOpaque(const RenderScene& scene, const RayUnderWay& ray, const Ray& start, RayScratch& scratch,
                  int& mirroredRaysLeft) {
    TileWalk walk(ray.origin, ray.direction, scene.tileSize, start.tileX, start.tileY);
    LastQuad lastQuad;
    const TileCell* left = nullptr;
    std::int32_t leftX = 0;
    std::int32_t leftY = 0;
    for (;;) {
        const std::size_t index = scene.map.find(walk.x(), walk.y());
        if (index == TileMap::outside || !(ray.travelled + walk.entered() < scene.renderDistance))
            return scene.fog;
        const TileCell& cell = scene.map.cell(index);
        const TileVisit visit{cell,  left,           walk.x(),      walk.y(),        leftX,
                              leftY, walk.entered(), walk.leaves(), walk.crossedX(), walk.boundary()};
        TileCandidates candidates(scene, ray, visit, index, lastQuad);
        for (SurfaceHit hit{}; candidates.next(hit);)
            if (const unsigned char* texel = takeSurface(scene, ray, hit, scratch, mirroredRaysLeft))
                return shadedColour(scene, ray.fogMultiplier, texel,
                                    lightAt(scene, positionOf(ray, hit), hit), ray.travelled + hit.distance);
        left = &cell;
        leftX = walk.x();
        leftY = walk.y();
        walk.advance();
    }
}

}  // namespace

Vec3 PlainTracer::trace(const Ray& ray, int depth, double fogMultiplier, TraceWork& work) const {
    RayScratch& own = work.depths[static_cast<std::size_t>(depth)];
    own.clear();
    if (depth == 0) work.mirroredRaysLeft = mirroredRaysOfPixel;
    if (!ray.direction.isFinite()) return scene_.fog;
    const RayUnderWay underWay(ray, fogMultiplier, depth < scene_.rayDepth);
    const Vec3 behind = walkToOpaque(scene_, underWay, ray, own, work.mirroredRaysLeft);
    for (const ReflectionEvent& event : own.reflections) {
        const Vec3 seen = trace(event.ray, depth + 1, fogMultiplier, work);
        TransparentLayer& layer = own.layers[event.layer];
        layer.red = byteOf(seen.x);
        layer.green = byteOf(seen.y);
        layer.blue = byteOf(seen.z);
    }
    return composeLayers(scene_, fogMultiplier, own.layers, behind);
}

}  // namespace kelmora
