#pragma once

#include <cstdint>
#include <functional>

#include "plush/scene/ray_surface.h"

namespace kelmora {

// A face of the scene that the eye may see.
struct SceneFace {
    SurfaceKind kind;
    bool acrossX = false;
    std::int32_t x = 0;  // its tile, and the one that it is seen from
    std::int32_t y = 0;
    std::int32_t leftX = 0;
    std::int32_t leftY = 0;
    double boundary = 0;
    std::uint32_t quad = 0;
    std::int32_t texture = 0;
    // In order round it; a quad is two faces of three.
    Vector corners[4]{};
    int cornerCount = 4;
};

// Calls `visit` with the faces of each tile in reach of the eye, rings of near tiles first, then with the
// quads. Walls of `isSolid` textures hide what stands in their tile.
void forEachFace(const RenderScene& scene, const std::function<bool(std::int32_t texture)>& isSolid,
                 const std::function<void(const SceneFace&)>& visit);

// The place where a ray meets a face at about this distance; false where only rounding let it be tried.
[[nodiscard]] bool meetFace(const RenderScene& scene, const RayUnderWay& ray, const SceneFace& face,
                            double distance, SurfaceHit& hit);

}  // namespace kelmora
