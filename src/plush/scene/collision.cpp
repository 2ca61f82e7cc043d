#include "plush/scene/collision.h"

#include <algorithm>
#include <cmath>

#include "base/trigonometry.h"

namespace kelmora {
namespace {

constexpr double onPlane = 1e-4;
constexpr double fullTurn = 6.28318530717958647693;

bool heightOnTriangleAtXY(const Vec3& first, const Vec3& second, const Vec3& third, double x, double y,
                          double& height) {
    const Vector a(first), b(second), c(third);
    const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    if (area == 0 || !std::isfinite(area)) return false;
    const double u = ((x - a.x) * (c.y - a.y) - (y - a.y) * (c.x - a.x)) / area;
    const double v = ((b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x)) / area;
    constexpr double tolerance = 1e-9;
    if (!(u >= -tolerance && v >= -tolerance && u + v <= 1 + tolerance)) return false;
    height = a.z + u * (b.z - a.z) + v * (c.z - a.z);
    return true;
}

bool isInRange(double value, double low, double high) {
    return value >= low - onPlane && value <= high + onPlane;
}

}  // namespace

bool heightOnQuadAtXY(const Quad& quad, double x, double y, double& height) {
    return heightOnTriangleAtXY(quad.tl, quad.tr, quad.br, x, y, height) ||
           heightOnTriangleAtXY(quad.tl, quad.br, quad.bl, x, y, height);
}

Vector quadTableCentre(std::span<const Quad> quads) {
    Vector sum;
    for (const Quad& quad : quads)
        sum = sum + Vector(quad.tl) + Vector(quad.tr) + Vector(quad.br) + Vector(quad.bl);
    return quads.empty() ? sum : sum * (0.25 / static_cast<double>(quads.size()));
}

bool quadBoxContainsPoint(std::span<const Quad> faces, const Vector& point) {
    const Vector centre = quadTableCentre(faces);
    Vector low(HUGE_VAL, HUGE_VAL, HUGE_VAL);
    Vector high(-HUGE_VAL, -HUGE_VAL, -HUGE_VAL);
    for (const Quad& face : faces) {
        for (const Vec3& corner : {face.tl, face.tr, face.br, face.bl}) {
            const Vector at(corner);
            low = {std::min(low.x, at.x), std::min(low.y, at.y), std::min(low.z, at.z)};
            high = {std::max(high.x, at.x), std::max(high.y, at.y), std::max(high.z, at.z)};
        }
        const Vector normal(face.normal);
        const double inner = dot(normal, centre - Vector(face.tl));
        const double side = dot(normal, point - Vector(face.tl));
        if (!(inner < 0 ? side <= onPlane : side >= -onPlane)) return false;
    }
    return isInRange(point.x, low.x, high.x) && isInRange(point.y, low.y, high.y) &&
           isInRange(point.z, low.z, high.z);
}

bool isInView(double viewerX, double viewerY, double x, double y, double direction, double fieldOfView) {
    if (!(fieldOfView >= 0)) return false;
    if (fieldOfView >= fullTurn) return true;
    const double dx = x - viewerX;
    const double dy = y - viewerY;
    const double distance = std::sqrt(dx * dx + dy * dy);
    const double ahead = dx * cosineOf(direction) + dy * sineOf(direction);
    return ahead >= (cosineOf(fieldOfView / 2) - 1e-9) * distance;
}

}  // namespace kelmora
