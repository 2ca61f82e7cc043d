#include "plush/scene/obstruction.h"

#include <algorithm>

#include "plush/scene/tile_walk.h"

namespace kelmora {
namespace {

bool crossesPlane(const Vector& from, double dz, double height, double enters, double leaves) {
    if (dz == 0) return false;
    const double at = (height - from.z) / dz;
    return at > 0 && at < 1 && at >= enters && at <= leaves;
}

bool crossesStep(const RenderScene& scene, std::int32_t enteredSlab, std::int32_t leftSlab, double oneHeight,
                 double otherHeight, double z) {
    return scene.texture(enteredSlab > 0 ? enteredSlab : leftSlab) && z > std::min(oneHeight, otherHeight) &&
           z < std::max(oneHeight, otherHeight);
}

}  // namespace

bool obstructsStep(const RenderScene& scene, const TileCell& cell, const TileCell& left, double z) {
    return crossesStep(scene, cell.roof, left.roof, scene.roofHeight(cell), scene.roofHeight(left), z) ||
           crossesStep(scene, cell.floor, left.floor, scene.floorHeight(cell), scene.floorHeight(left), z);
}

bool isObstructed(const RenderScene& scene, const Vector& from, const Vector& to, std::int32_t startX,
                  std::int32_t startY) {
    const Vector way = to - from;
    if (!mayBeObstructed(way)) return false;
    TileWalk walk(from, way, scene.tileSize, startX, startY);
    std::size_t index = scene.map.find(walk.x(), walk.y());
    const TileCell* left = nullptr;
    while (index != TileMap::outside) {
        const TileCell& cell = scene.map.cell(index);
        if (left) {
            if (scene.texture(cell.wall)) return true;
            if (obstructsStep(scene, cell, *left, from.z + walk.entered() * way.z)) return true;
        }
        const double leaves = walk.leaves();
        if ((scene.texture(cell.roof) &&
             crossesPlane(from, way.z, scene.roofHeight(cell), walk.entered(), leaves)) ||
            (scene.texture(cell.floor) &&
             crossesPlane(from, way.z, scene.floorHeight(cell), walk.entered(), leaves)))
            return true;
        if (leaves >= 1) return false;
        left = &cell;
        walk.advance();
        index = scene.map.find(walk.x(), walk.y());
    }
    return false;
}

}  // namespace kelmora
