#include "plush/scene/scene_faces.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "plush/scene/tile_surfaces.h"

namespace kelmora {
namespace {

// Walls have no end; this is where they are cut.
constexpr double tallest = 1e7;

class FaceCollector {
public:
    FaceCollector(const RenderScene& scene, FaceVisitor& visitor) : scene_(scene), visitor_(visitor) {}

    void tile(std::int32_t x, std::int32_t y) const {
        const std::size_t index = scene_.map.find(x, y);
        if (index == TileMap::outside) return;
        const TileCell& cell = scene_.map.cell(index);
        const bool isEyeTile = x == scene_.camera.tileX && y == scene_.camera.tileY;
        const bool isSolidWall = visitor_.isSolid(cell.wall);
        for (const int side : {-1, 1}) {
            upright(cell, isSolidWall, x, y, x + side, y);
            upright(cell, isSolidWall, x, y, x, y + side);
        }
        if (isSolidWall && !isEyeTile) return;
        const auto away = [&](double height) { return std::fabs(height - scene_.camera.eye.z); };
        const bool isRoofNearer = away(scene_.roofHeight(cell)) < away(scene_.floorHeight(cell));
        if (isRoofNearer) roof(cell, x, y);
        if (scene_.texture(cell.floor))
            slab(SurfaceKind::FloorTop, x, y, cell.floor, scene_.floorHeight(cell));
        if (!isRoofNearer) roof(cell, x, y);
    }

    void quads() const {
        for (std::size_t i = 0; i < scene_.quads.size(); ++i) {
            const Quad& quad = scene_.quads[i];
            if (!quad.isFinite() || !scene_.texture(quad.texture)) continue;
            SceneFace face{SurfaceKind::Quad};
            face.quad = static_cast<std::uint32_t>(i);
            face.texture = quad.texture;
            face.cornerCount = 3;
            face.x = face.leftX = tileOf(static_cast<double>(quad.tl.x), scene_.tileSize);
            face.y = face.leftY = tileOf(static_cast<double>(quad.tl.y), scene_.tileSize);
            for (const Vec3& third : {quad.tr, quad.bl}) {
                face.corners[0] = Vector(quad.tl);
                face.corners[1] = Vector(third);
                face.corners[2] = Vector(quad.br);
                visitor_.visit(face);
            }
        }
    }

private:
    // The wall and the steps on the boundary through which a ray comes from the tile `left`.
    void upright(const TileCell& cell, bool isSolidWall, std::int32_t x, std::int32_t y, std::int32_t leftX,
                 std::int32_t leftY) const {
        const std::size_t leftIndex = scene_.map.find(leftX, leftY);
        if (leftIndex == TileMap::outside) return;
        SceneFace face{SurfaceKind::Wall};
        face.acrossX = leftX != x;
        face.x = x;
        face.y = y;
        face.leftX = leftX;
        face.leftY = leftY;
        face.boundary = (face.acrossX ? std::max(x, leftX) : std::max(y, leftY)) * scene_.tileSize;
        const double eye = face.acrossX ? scene_.camera.eye.x : scene_.camera.eye.y;
        const bool fromBelow = face.acrossX ? leftX < x : leftY < y;
        if (fromBelow ? eye > face.boundary : eye < face.boundary) return;
        const TileCell& left = scene_.map.cell(leftIndex);
        const bool leftIsEyeTile = leftX == scene_.camera.tileX && leftY == scene_.camera.tileY;
        if (visitor_.isSolid(left.wall) && !leftIsEyeTile) return;
        if (scene_.texture(cell.wall)) {
            face.texture = cell.wall;
            span(face, scene_.camera.eye.z - tallest, scene_.camera.eye.z + tallest);
            if (isSolidWall) return;
        }
        step(face, SurfaceKind::FloorStep, cell.floor, left.floor, scene_.floorHeight(cell),
             scene_.floorHeight(left));
        step(face, SurfaceKind::RoofStep, cell.roof, left.roof, scene_.roofHeight(cell),
             scene_.roofHeight(left));
    }

    void step(SceneFace face, SurfaceKind kind, std::int32_t own, std::int32_t other, double oneHeight,
              double otherHeight) const {
        face.kind = kind;
        face.texture = own > 0 ? own : other;
        if (scene_.texture(face.texture) && std::fabs(oneHeight - otherHeight) >= lowestStep)
            span(face, std::min(oneHeight, otherHeight), std::max(oneHeight, otherHeight));
    }

    void span(SceneFace& face, double bottom, double top) const {
        const double first = (face.acrossX ? face.y : face.x) * scene_.tileSize;
        const double last = ((face.acrossX ? face.y : face.x) + 1.0) * scene_.tileSize;
        const auto corner = [&](double along, double z) {
            return face.acrossX ? Vector(face.boundary, along, z) : Vector(along, face.boundary, z);
        };
        face.corners[0] = corner(first, top);
        face.corners[1] = corner(last, top);
        face.corners[2] = corner(last, bottom);
        face.corners[3] = corner(first, bottom);
        visitor_.visit(face);
    }

    void roof(const TileCell& cell, std::int32_t x, std::int32_t y) const {
        if (scene_.texture(cell.roof))
            slab(SurfaceKind::RoofUnderside, x, y, cell.roof, scene_.roofHeight(cell));
    }

    void slab(SurfaceKind kind, std::int32_t x, std::int32_t y, std::int32_t texture, double height) const {
        SceneFace face{kind};
        face.x = face.leftX = x;
        face.y = face.leftY = y;
        face.texture = texture;
        const double size = scene_.tileSize;
        face.corners[0] = {x * size, y * size, height};
        face.corners[1] = {(x + 1.0) * size, y * size, height};
        face.corners[2] = {(x + 1.0) * size, (y + 1.0) * size, height};
        face.corners[3] = {x * size, (y + 1.0) * size, height};
        visitor_.visit(face);
    }

    const RenderScene& scene_;
    FaceVisitor& visitor_;
};

}  // namespace

void forEachFace(const RenderScene& scene, FaceVisitor& visitor) {
    const FaceCollector collector(scene, visitor);
    const std::int32_t columns = scene.map.columns();
    std::int32_t rows = 0;
    for (std::int32_t x = 0; x < columns; ++x) rows = std::max(rows, scene.map.rows(x));
    const std::int32_t eyeX = scene.camera.tileX;
    const std::int32_t eyeY = scene.camera.tileY;
    const double reach = std::ceil(scene.renderDistance / scene.tileSize) + 1;
    const auto most = [&](std::int32_t eye, std::int32_t tiles) {
        const std::int32_t edge = std::max(eye, tiles - 1 - eye);
        return reach < edge ? static_cast<std::int32_t>(reach) : edge;
    };
    const std::int32_t mostX = most(eyeX, columns);
    const std::int32_t mostY = most(eyeY, rows);
    // Each boundary that a ray crosses takes it one step further from the eye's tile.
    for (std::int32_t steps = 0; steps <= mostX + mostY && !visitor.isClosed(); ++steps)
        for (std::int32_t x = std::max(steps - mostY, 0); x <= std::min(steps, mostX); ++x) {
            const std::int32_t y = steps - x;
            collector.tile(eyeX - x, eyeY - y);
            if (x > 0) collector.tile(eyeX + x, eyeY - y);
            if (y > 0) collector.tile(eyeX - x, eyeY + y);
            if (x > 0 && y > 0) collector.tile(eyeX + x, eyeY + y);
        }
    collector.quads();
}

bool meetFace(const RenderScene& scene, const RayUnderWay& ray, const SceneFace& face, double distance,
              SurfaceHit& hit) {
    if (face.kind == SurfaceKind::Quad) {
        const Quad& quad = scene.quads[face.quad];
        QuadHit met;
        if (!rayQuadIntersect(ray.origin, ray.direction, quad, 0, false, met)) return false;
        hit = quadSurface(scene, quad, met, face.x, face.y);
        const Vector at = positionOf(ray, hit);
        hit.lightX = tileOf(at.x, scene.tileSize);
        hit.lightY = tileOf(at.y, scene.tileSize);
        return scene.map.find(hit.lightX, hit.lightY) != TileMap::outside;
    }
    const TileCell& cell = scene.map.cell(scene.map.find(face.x, face.y));
    const TileCell& left = scene.map.cell(scene.map.find(face.leftX, face.leftY));
    const bool isSlab = face.kind == SurfaceKind::RoofUnderside || face.kind == SurfaceKind::FloorTop;
    const TileVisit visit{cell,
                          &left,
                          face.x,
                          face.y,
                          face.leftX,
                          face.leftY,
                          isSlab ? 0 : distance,
                          isSlab ? std::numeric_limits<double>::infinity() : distance,
                          face.acrossX,
                          face.boundary};
    if (isSlab) return slabCandidate(scene, ray, visit, face.kind, hit);
    return face.kind == SurfaceKind::Wall ? wallCandidate(scene, ray, visit, hit)
                                          : stepCandidate(scene, ray, visit, face.kind, hit);
}

}  // namespace kelmora
