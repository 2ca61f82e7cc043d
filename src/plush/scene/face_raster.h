#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "plush/scene/projected_point.h"
#include "plush/scene/scene_faces.h"

namespace kelmora {

// What changes evenly over a picture, at u and v, -1 to 1 from the left and the top.
struct ScreenPlane {
    double middle = 0;
    double across = 0;
    double down = 0;

    double at(double u, double v) const { return middle + down * v + across * u; }
    ScreenPlane operator*(double factor) const { return {middle * factor, across * factor, down * factor}; }
    ScreenPlane operator+(const ScreenPlane& other) const {
        return {middle + other.middle, across + other.across, down + other.down};
    }
};

// Finds the pixels that one face after the other covers.
class FaceRaster {
public:
    FaceRaster(const Camera& camera, std::int32_t width, std::int32_t height)
        : camera_(camera),
          width_(width),
          height_(height),
          left_(static_cast<std::size_t>(height)),
          right_(static_cast<std::size_t>(height)) {}

    // The face from now on; false where no pixel is in it.
    [[nodiscard]] bool take(const SceneFace& face);
    // How near the face is: 1 / distance ahead.
    const ScreenPlane& nearness() const { return nearness_; }

    // Calls `plot` with each row of the face and its pixels from the first to before the end.
    template <typename Plot>
    void forEachSpan(const Plot& plot) const {
        for (std::int32_t y = first_; y < last_; ++y) {
            const double left = left_[static_cast<std::size_t>(y)];
            const double right = right_[static_cast<std::size_t>(y)];
            if (!(left <= right)) continue;
            const std::int32_t start = pixelFrom(left, width_);
            const std::int32_t end = pixelFrom(right + 2 * edgeTolerance, width_);
            if (start < end) plot(y, start, end);
        }
    }

private:
    struct Point {
        double x;
        double y;
    };

    // Lets no gap stand between faces that share an edge, in pixels.
    static constexpr double edgeTolerance = 1e-6;

    // The first pixel at or behind a coordinate, inside the picture.
    static std::int32_t pixelFrom(double coordinate, std::int32_t limit) {
        const double exact = coordinate - edgeTolerance;
        if (!(exact > 0)) return 0;
        if (exact >= limit) return limit;
        const auto whole = static_cast<std::int32_t>(exact);
        return whole < exact ? whole + 1 : whole;
    }
    void project(const SceneFace& face);
    bool bound();
    void widen(const Point& a, const Point& b);

    Camera camera_;
    std::int32_t width_;
    std::int32_t height_;
    ScreenPlane nearness_;
    // The part of the face in front of the near plane, in pixels.
    std::array<Point, 5> points_;
    std::size_t pointCount_ = 0;
    std::int32_t first_ = 0;
    std::int32_t last_ = 0;
    // Of each row, inside the face.
    std::vector<double> left_;
    std::vector<double> right_;
};

}  // namespace kelmora
