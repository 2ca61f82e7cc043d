#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "plush/scene/ray_surface.h"

namespace kelmora {

// The lights of a picture by the tiles that they reach. Gives the light of the plain way to the last bit.
class SceneLights {
public:
    explicit SceneLights(const RenderScene& scene);

    // The light at a hit, as `lightAt` has it.
    Vec3 at(const RayUnderWay& ray, const SurfaceHit& hit) const {
        return reaches(hit.lightX, hit.lightY) ? at(positionOf(ray, hit), hit.lightX, hit.lightY) : least_;
    }
    Vec3 at(const Vector& position, std::int32_t tileX, std::int32_t tileY) const;
    // Whether any light reaches a tile; where none does there is the least light.
    bool reaches(std::int32_t x, std::int32_t y) const { return !reaching(x, y).empty(); }
    const Vec3& least() const { return least_; }

private:
    // A light that may count, and the tiles that it reaches.
    struct Source {
        LightSource light;
        Vector position;
        double squaredRadius;
        double floor;  // heights of the slabs where the view is open
        double roof;
        std::int32_t firstX;
        std::int32_t lastX;
        std::int32_t firstY;
        std::int32_t lastY;
    };
    void choose();
    void layOut();
    template <typename Visit>
    void forEachTile(const Source& source, const Visit& visit) const;
    void openViews();
    std::size_t tileNumber(std::int32_t column, std::int32_t row) const {
        return static_cast<std::size_t>(column) * static_cast<std::size_t>(rows_) +
               static_cast<std::size_t>(row);
    }
    std::span<const std::uint32_t> reaching(std::int32_t x, std::int32_t y) const;
    bool isFull(const Vec3& sum) const;
    bool isShaded(const Vector& from, const Vector& to, std::int32_t startX, std::int32_t startY) const;

    const RenderScene& scene_;
    Vec3 least_;                 // where no light reaches
    bool onlyBrightens_ = true;  // no light takes any away
    std::vector<Source> sources_;
    // A rectangle of tiles and the numbers of the sources that reach each of them, with a bit where nothing
    // can stand in between.
    std::int32_t firstX_ = 0;
    std::int32_t firstY_ = 0;
    std::int32_t columns_ = 0;
    std::int32_t rows_ = 0;
    std::vector<std::uint32_t> starts_;
    std::vector<std::uint32_t> numbers_;
    bool isLaidOut_ = false;  // else all numbers stand for every tile
};

}  // namespace kelmora
