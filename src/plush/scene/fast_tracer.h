#pragma once

#include "plush/scene/flag_walk.h"
#include "plush/scene/scene_lights.h"
#include "plush/scene/tile_surfaces.h"

namespace kelmora {

// Gives the bytes of the plain tracer. Passes over tiles without surfaces, tries quads by trees of boxes and
// lights by the tiles that they reach. The scene's flags have to be laid out.
class FastTracer {
public:
    explicit FastTracer(const RenderScene& scene) : scene_(scene), lights_(scene) {}

    // The slabs of a tile, and of those that follow while the heights stay: their distances.
    struct Slabs {
        double floor = 0;
        double roof = 0;
    };
    // What ends a ray; without a texel it is fog.
    struct Sight {
        const unsigned char* texel = nullptr;
        double distance = 0;  // travelled in all
        Vec3 light;
    };

    // What a ray sees behind the layers that it leaves in the scratch, which is clear.
    Sight look(const RayUnderWay& ray, std::int32_t tileX, std::int32_t tileY, const Slabs& slabs,
               RayScratch& scratch, int& mirroredRaysLeft) const;
    // The colour, each channel 0 to 255, of a ray that left something in the scratch of its depth.
    Vec3 compose(const RayUnderWay& ray, const Sight& sight, int depth, TraceWork& work) const;

private:
    // A way through one tile.
    struct TileWay {
        TileVisit visit;
        unsigned flags;
        bool stepped;
        std::size_t index;
    };

    Vec3 trace(const Ray& ray, int depth, double fogMultiplier, TraceWork& work) const;
    Slabs slabsOf(const RayUnderWay& ray, const TileCell& cell) const;
    double horizonFrom(const RayUnderWay& ray, const Slabs& slabs, double entered) const;
    const unsigned char* crossTile(const RayUnderWay& ray, const TileWay& way, const Slabs& slabs,
                                   LastQuad& last, RayScratch& scratch, int& mirroredRaysLeft,
                                   SurfaceHit& hit) const;
    unsigned nearestFixed(const RayUnderWay& ray, const TileWay& way, const Slabs& slabs, unsigned taken,
                          SurfaceHit& hit) const;

    const RenderScene& scene_;
    SceneLights lights_;
};

}  // namespace kelmora
