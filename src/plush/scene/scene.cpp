#include "plush/scene/scene.h"

#include <cmath>

#include "base/trigonometry.h"

namespace kelmora {
namespace {

constexpr double degreesOfHalfTurn = 180;
constexpr double halfTurn = 3.14159265358979323846;

}  // namespace

void Scene::setTiles(TileLayer layer, TileTable table) {
    tiles_[static_cast<std::size_t>(layer)] = std::move(table);
    mapIsStale_ = gridIsStale_ = flagsAreStale_ = true;
}

void Scene::setTextures(std::vector<PlushImage*> textures) {
    textures_ = std::move(textures);
    mapIsStale_ = flagsAreStale_ = true;
}

void Scene::setQuads(std::vector<Quad> quads) {
    quads_ = std::move(quads);
    for (Quad& quad : quads_) finalizeQuad(quad);
    gridIsStale_ = flagsAreStale_ = true;
}

void Scene::setTileSize(float size) {
    tileSize_ = size;
    gridIsStale_ = flagsAreStale_ = true;
}

const TileMap& Scene::map() const {
    if (mapIsStale_) map_ = TileMap(tiles_[0], tiles_[1], tiles_[2], tiles_[3], tiles_[4], textures_.size());
    mapIsStale_ = false;
    return map_;
}

const QuadGrid& Scene::quadGrid() const {
    if (gridIsStale_) quadGrid_ = QuadGrid(quads_, map(), static_cast<double>(tileSize_));
    gridIsStale_ = false;
    return quadGrid_;
}

const TileFlags& Scene::tileFlags() const {
    if (flagsAreStale_) flags_ = TileFlags(map(), quadGrid());
    flagsAreStale_ = false;
    return flags_;
}

void Scene::spawnLight(float x, float y, float z, float r, float g, float b, float radius) {
    lights.push_back({x, y, tileSize_ - z, r / 255, g / 255, b / 255, radius});
}

void Scene::setFieldOfView(double degrees) {
    settings.fieldOfView = degrees * halfTurn / degreesOfHalfTurn;
}

double Scene::fieldOfViewDegrees() const {
    const double degrees = settings.fieldOfView * degreesOfHalfTurn / halfTurn;
    const double whole = std::floor(degrees + 0.5);
    return std::fabs(degrees - whole) <= std::fabs(degrees) * 1e-12 ? whole : degrees;
}

Position Scene::afterMove(double distance, bool forward) const {
    const double sine = sineOf(static_cast<double>(player.rotation));
    const double cosine = cosineOf(static_cast<double>(player.rotation));
    const double x = static_cast<double>(player.x);
    const double y = static_cast<double>(player.y);
    if (forward) return {static_cast<float>(x + distance * cosine), static_cast<float>(y + distance * sine)};
    return {static_cast<float>(x - distance * sine), static_cast<float>(y + distance * cosine)};
}

}  // namespace kelmora
