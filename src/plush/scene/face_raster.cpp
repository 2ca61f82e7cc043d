#include "plush/scene/face_raster.h"

#include <algorithm>

namespace kelmora {
namespace {

// Edges lower than this are level, in pixels.
constexpr double levelEdge = 1e-12;

}  // namespace

bool FaceRaster::take(const SceneFace& face) {
    project(face);
    if (pointCount_ < 3 || !bound()) return false;
    const Vector normal = cross(face.corners[1] - face.corners[0], face.corners[2] - face.corners[0]);
    const double offset = dot(normal, face.corners[0] - camera_.eye);
    if (offset == 0 || !std::isfinite(offset)) return false;
    nearness_ = {dot(normal, camera_.forward) / offset,
                 dot(normal, camera_.right) * camera_.halfWidth / offset,
                 dot(normal, camera_.up) * camera_.halfHeight / offset};
    std::fill(left_.begin() + first_, left_.begin() + last_, HUGE_VAL);
    std::fill(right_.begin() + first_, right_.begin() + last_, -HUGE_VAL);
    for (std::size_t i = 0; i < pointCount_; ++i) widen(points_[i], points_[(i + 1) % pointCount_]);
    return true;
}

void FaceRaster::project(const SceneFace& face) {
    pointCount_ = 0;
    const auto add = [&](const Vector& corner) {
        ProjectedPoint point;
        if (pointCount_ < points_.size() && projectPoint(camera_, width_, height_, corner, point))
            points_[pointCount_++] = {point.x, point.y};
    };
    double aheads[4];
    for (int i = 0; i < face.cornerCount; ++i)
        aheads[i] = dot(face.corners[i] - camera_.eye, camera_.forward);
    for (int i = 0; i < face.cornerCount; ++i) {
        const int next = i + 1 < face.cornerCount ? i + 1 : 0;
        const bool isAhead = aheads[i] >= nearPlane;
        if (isAhead) add(face.corners[i]);
        if (isAhead != (aheads[next] >= nearPlane)) {
            const double share = (nearPlane - aheads[i]) / (aheads[next] - aheads[i]);
            add(face.corners[i] + (face.corners[next] - face.corners[i]) * share);
        }
    }
}

bool FaceRaster::bound() {
    Point least = points_[0];
    Point most = points_[0];
    for (std::size_t i = 1; i < pointCount_; ++i) {
        least = {std::min(least.x, points_[i].x), std::min(least.y, points_[i].y)};
        most = {std::max(most.x, points_[i].x), std::max(most.y, points_[i].y)};
    }
    first_ = pixelFrom(least.y, height_);
    last_ = pixelFrom(most.y + 2 * edgeTolerance, height_);
    return first_ < last_ && least.x - edgeTolerance <= width_ && most.x + edgeTolerance >= 0;
}

void FaceRaster::widen(const Point& a, const Point& b) {
    const auto [lowY, highY] = std::minmax(a.y, b.y);
    const auto [lowX, highX] = std::minmax(a.x, b.x);
    const std::int32_t last = std::min(pixelFrom(highY + 2 * edgeTolerance, height_), last_);
    const bool isLevel = highY - lowY < levelEdge;
    const double step = isLevel ? 0 : (b.x - a.x) / (b.y - a.y);
    for (std::int32_t y = std::max(pixelFrom(lowY, height_), first_); y < last; ++y) {
        double& left = left_[static_cast<std::size_t>(y)];
        double& right = right_[static_cast<std::size_t>(y)];
        const double x = a.x + step * (std::clamp(static_cast<double>(y), lowY, highY) - a.y);
        left = std::min(left, isLevel ? lowX : std::max(x, lowX));
        right = std::max(right, isLevel ? highX : std::min(x, highX));
    }
}

}  // namespace kelmora
