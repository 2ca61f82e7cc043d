#pragma once

#include <cstdint>

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

// What becomes of faces.
class FaceVisitor {
public:
    // Walls of these textures hide what stands in their tile.
    virtual bool isSolid(std::int32_t texture) = 0;
    virtual void visit(const SceneFace& face) = 0;
    // Nothing behind the faces so far is seen.
    virtual bool isClosed() = 0;

protected:
    ~FaceVisitor() = default;
};

// Visits the faces of each tile in reach of the eye, near ones first: a ray comes to those of tiles in the
// same order. Then the quads.
void forEachFace(const RenderScene& scene, FaceVisitor& visitor);

// The place where a ray meets a face at about this distance; false where only rounding let it be tried.
[[nodiscard]] bool meetFace(const RenderScene& scene, const RayUnderWay& ray, const SceneFace& face,
                            double distance, SurfaceHit& hit);

}  // namespace kelmora
