#include "plush/scene/scene_lights.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "plush/scene/flag_walk.h"
#include "plush/scene/lighting.h"
#include "plush/scene/obstruction.h"
#include "plush/scene/open_view.h"

namespace kelmora {
namespace {

// What the lists of all tiles may hold together, and the tiles that may have one.
constexpr std::uint64_t maximumEntries = std::uint64_t{1} << 20;
// A view is looked at for so many entries; that takes about a microsecond each.
constexpr std::size_t maximumViews = 4096;
constexpr std::uint32_t isOpen = std::uint32_t{1} << 31;
// Lights nearer than this are looked at in the plain way.
constexpr double nearestOpen = 0.001;
// Hits lie in their tile but for rounding and for the steps off a mirror; this is far more.
constexpr double outsideTile = 0.02;

std::int32_t cutTile(double coordinate, double tileSize, std::int32_t limit) {
    const double tile = std::floor(coordinate / tileSize);
    return static_cast<std::int32_t>(std::clamp(tile, -1.0, static_cast<double>(limit)));
}

// Distance of a coordinate from a tile on one axis.
double gap(double coordinate, std::int32_t tile, double tileSize, double slack) {
    const double low = tile * tileSize - slack;
    const double high = (tile + 1.0) * tileSize + slack;
    return std::max({low - coordinate, coordinate - high, 0.0});
}

// Where on the way between two points, 0 to 1, a plane is crossed; infinite if it is not.
double crossing(double from, double way, double height) {
    constexpr double never = std::numeric_limits<double>::infinity();
    if (way == 0) return never;
    const double at = (height - from) / way;
    return at > 0 && at < 1 ? at : never;
}

}  // namespace

SceneLights::SceneLights(const RenderScene& scene) : scene_(scene) {
    const float least = std::min(scene.lightMinimum, scene.lightMaximum);
    least_ = {least, least, least};
    choose();
    layOut();
}

void SceneLights::choose() {
    const double size = scene_.tileSize;
    const std::int32_t columns = scene_.map.columns();
    std::int32_t rows = 0;
    for (std::int32_t x = 0; x < columns; ++x) rows = std::max(rows, scene_.map.rows(x));
    for (const LightSource& light : scene_.lights) {
        Source source{light, Vector(Vec3{light.x, light.y, light.z}), 0, 0, 0, 0, 0, 0, 0};
        const double radius = std::fabs(static_cast<double>(light.radius));
        source.squaredRadius = radius * radius;
        const Vector way = source.position - scene_.camera.eye;
        const double reach = scene_.renderDistance + radius + size + outsideTile;
        if (!(radius > 0) || !source.position.isFinite() || dot(way, way) > reach * reach) continue;
        const double slack = radius * 1.001 + outsideTile +
                             1e-9 * (std::fabs(source.position.x) + std::fabs(source.position.y));
        source.firstX = std::max(cutTile(source.position.x - slack, size, columns), 0);
        source.lastX = std::min(cutTile(source.position.x + slack, size, columns), columns - 1);
        source.firstY = std::max(cutTile(source.position.y - slack, size, rows), 0);
        source.lastY = std::min(cutTile(source.position.y + slack, size, rows), rows - 1);
        if (source.firstX > source.lastX || source.firstY > source.lastY) continue;
        for (const float channel : {light.r, light.g, light.b})
            onlyBrightens_ = onlyBrightens_ && channel >= 0 && std::isfinite(channel);
        sources_.push_back(source);
    }
}

template <typename Visit>
void SceneLights::forEachTile(const Source& source, const Visit& visit) const {
    const double size = scene_.tileSize;
    const double slack = outsideTile + 1e-9 * (std::fabs(source.position.x) + std::fabs(source.position.y));
    for (std::int32_t x = source.firstX; x <= source.lastX; ++x) {
        const double acrossX = gap(source.position.x, x, size, slack);
        for (std::int32_t y = source.firstY; y <= source.lastY; ++y) {
            const double acrossY = gap(source.position.y, y, size, slack);
            if (acrossX * acrossX + acrossY * acrossY <= source.squaredRadius * 1.001)
                visit(tileNumber(x - firstX_, y - firstY_));
        }
    }
}

void SceneLights::layOut() {
    if (sources_.empty()) return;
    std::int32_t lastX = 0;
    std::int32_t lastY = 0;
    std::uint64_t entries = 0;
    firstX_ = firstY_ = std::numeric_limits<std::int32_t>::max();
    for (const Source& source : sources_) {
        firstX_ = std::min(firstX_, source.firstX);
        firstY_ = std::min(firstY_, source.firstY);
        lastX = std::max(lastX, source.lastX);
        lastY = std::max(lastY, source.lastY);
        entries += (static_cast<std::uint64_t>(source.lastX - source.firstX) + 1) *
                   (static_cast<std::uint64_t>(source.lastY - source.firstY) + 1);
    }
    columns_ = lastX - firstX_ + 1;
    rows_ = lastY - firstY_ + 1;
    const std::uint64_t tiles = static_cast<std::uint64_t>(columns_) * static_cast<std::uint64_t>(rows_);
    isLaidOut_ = entries <= maximumEntries && tiles <= maximumEntries;
    if (!isLaidOut_) {
        numbers_.resize(sources_.size());
        std::iota(numbers_.begin(), numbers_.end(), 0u);
        return;
    }
    starts_.assign(static_cast<std::size_t>(tiles) + 1, 0);
    for (const Source& source : sources_) forEachTile(source, [&](std::size_t tile) { ++starts_[tile + 1]; });
    std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
    numbers_.resize(starts_.back());
    std::vector<std::uint32_t> next = starts_;
    for (std::size_t i = 0; i < sources_.size(); ++i)
        forEachTile(sources_[i],
                    [&](std::size_t tile) { numbers_[next[tile]++] = static_cast<std::uint32_t>(i); });
    if (numbers_.size() <= maximumViews) openViews();
}

void SceneLights::openViews() {
    std::vector<OpenView> views;
    for (Source& source : sources_) {
        views.emplace_back(scene_, source.position);
        source.floor = views.back().floorHeight();
        source.roof = views.back().roofHeight();
    }
    for (std::int32_t x = 0; x < columns_; ++x)
        for (std::int32_t y = 0; y < rows_; ++y) {
            const std::size_t tile = tileNumber(x, y);
            for (std::uint32_t i = starts_[tile]; i < starts_[tile + 1]; ++i)
                if (views[numbers_[i]].isOpen(firstX_ + x, firstY_ + y)) numbers_[i] |= isOpen;
        }
}

std::span<const std::uint32_t> SceneLights::reaching(std::int32_t x, std::int32_t y) const {
    if (!isLaidOut_) return numbers_;
    const std::int32_t column = x - firstX_;
    const std::int32_t row = y - firstY_;
    if (column < 0 || column >= columns_ || row < 0 || row >= rows_) return {};
    const std::size_t tile =
        static_cast<std::size_t>(column) * static_cast<std::size_t>(rows_) + static_cast<std::size_t>(row);
    return std::span(numbers_).subspan(starts_[tile], starts_[tile + 1] - starts_[tile]);
}

bool SceneLights::isFull(const Vec3& sum) const {
    return onlyBrightens_ && sum.x >= scene_.lightMaximum && sum.y >= scene_.lightMaximum &&
           sum.z >= scene_.lightMaximum;
}

Vec3 SceneLights::at(const Vector& position, std::int32_t tileX, std::int32_t tileY) const {
    Vec3 sum{scene_.lightMinimum, scene_.lightMinimum, scene_.lightMinimum};
    for (const std::uint32_t number : reaching(tileX, tileY)) {
        const Source& source = sources_[number & ~isOpen];
        const Vector way = source.position - position;
        const double squared = dot(way, way);
        if (!(squared < source.squaredRadius)) continue;
        if (isFull(sum)) break;
        const double distance = std::sqrt(squared);
        const bool isSeen = (number & isOpen) && position.z >= source.floor && position.z <= source.roof &&
                            distance > nearestOpen;
        if (!isSeen) {
            const Vector unit = squared > 0 ? way * (1 / distance) : way;
            if (isShaded(position + unit * lightNudge, source.position, tileX, tileY)) continue;
        }
        sum = sum + lightFrom(source.light, distance);
    }
    return {std::min(sum.x, scene_.lightMaximum), std::min(sum.y, scene_.lightMaximum),
            std::min(sum.z, scene_.lightMaximum)};
}

// As `isObstructed` has it.
bool SceneLights::isShaded(const Vector& from, const Vector& to, std::int32_t startX,
                           std::int32_t startY) const {
    const Vector way = to - from;
    if (!mayBeObstructed(way)) return false;
    if (!scene_.flags.isLaidOut()) return isObstructed(scene_, from, to, startX, startY);
    const std::size_t startIndex = scene_.map.find(startX, startY);
    if (startIndex == TileMap::outside) return false;
    FlagWalk walk(scene_.flags, from, way, {1 / way.x, 1 / way.y, 0}, scene_.tileSize, startX, startY, 0);
    double floor = 0;
    double roof = 0;
    double horizon = 0;
    const auto comeTo = [&](const TileCell& cell) {
        floor = crossing(from.z, way.z, scene_.floorHeight(cell));
        roof = crossing(from.z, way.z, scene_.roofHeight(cell));
        horizon = std::min({floor, roof, 1.0});
    };
    comeTo(scene_.map.cell(startIndex));
    for (;; walk.advance()) {
        walk.runTo(horizon);
        const unsigned flags = walk.flags();
        if (flags & tileFlag::outside) return false;
        const double leaves = walk.leaves();
        if (leaves >= 1 && horizon == 1 && !(flags & tileFlag::wall) && !walk.stepped()) return false;
        const TileCell& cell = scene_.map.cell(scene_.map.find(walk.x(), walk.y()));
        const double entered = walk.entered();
        if (walk.hasMoved() && scene_.texture(cell.wall)) return true;
        if (walk.stepped()) {
            const TileCell& left = scene_.map.cell(scene_.map.find(walk.leftX(), walk.leftY()));
            if (obstructsStep(scene_, cell, left, from.z + entered * way.z)) return true;
            comeTo(cell);
        }
        if ((floor >= entered && floor <= leaves && scene_.texture(cell.floor)) ||
            (roof >= entered && roof <= leaves && scene_.texture(cell.roof)))
            return true;
        if (leaves >= 1) return false;
    }
}

}  // namespace kelmora
