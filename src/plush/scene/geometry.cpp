#include "plush/scene/geometry.h"

#include <algorithm>

namespace kelmora {
namespace {

// Lets a ray through no gap between the two triangles of a quad.
constexpr double edgeTolerance = 1e-9;

bool counts(double distance, double behind, bool orAtIt) {
    return distance > 0 && (distance > behind || (orAtIt && distance == behind));
}

Vec3 narrowed(const Vector& vector) {
    return {static_cast<float>(vector.x), static_cast<float>(vector.y), static_cast<float>(vector.z)};
}

}  // namespace

bool Quad::isFinite() const {
    return Vector(tl).isFinite() && Vector(tr).isFinite() && Vector(br).isFinite() && Vector(bl).isFinite();
}

Vector computeNormal(const Vector& a, const Vector& b, const Vector& c) {
    return normalised(cross(b - a, c - a));
}

void finalizeQuad(Quad& quad) {
    constexpr float margin = 0.0001f;
    const auto widened = [](float a, float b, float c, float d, float& low, float& high) {
        low = std::min({a, b, c, d}) - margin;
        high = std::max({a, b, c, d}) + margin;
    };
    quad.normal = narrowed(computeNormal(Vector(quad.tl), Vector(quad.tr), Vector(quad.bl)));
    widened(quad.tl.x, quad.tr.x, quad.br.x, quad.bl.x, quad.box.minX, quad.box.maxX);
    widened(quad.tl.y, quad.tr.y, quad.br.y, quad.bl.y, quad.box.minY, quad.box.maxY);
    widened(quad.tl.z, quad.tr.z, quad.br.z, quad.bl.z, quad.box.minZ, quad.box.maxZ);
}

bool rayTriangleIntersect(const Vector& origin, const Vector& direction, const Vector& a, const Vector& b,
                          const Vector& c, TriangleHit& hit) {
    const Vector ab = b - a;
    const Vector ac = c - a;
    const Vector p = cross(direction, ac);
    const double determinant = dot(ab, p);
    if (determinant == 0 || !std::isfinite(determinant)) return false;
    const double inverse = 1 / determinant;
    const Vector s = origin - a;
    hit.u = dot(s, p) * inverse;
    if (!(hit.u >= -edgeTolerance && hit.u <= 1 + edgeTolerance)) return false;
    const Vector q = cross(s, ab);
    hit.v = dot(direction, q) * inverse;
    if (!(hit.v >= -edgeTolerance && hit.u + hit.v <= 1 + edgeTolerance)) return false;
    hit.distance = dot(ac, q) * inverse;
    return std::isfinite(hit.distance);
}

bool rayQuadIntersect(const Vector& origin, const Vector& direction, const Quad& quad, double behind,
                      bool orAtIt, QuadHit& hit) {
    const Vector tl(quad.tl);
    const Vector br(quad.br);
    TriangleHit part;
    bool found = false;
    if (rayTriangleIntersect(origin, direction, tl, Vector(quad.tr), br, part) &&
        counts(part.distance, behind, orAtIt)) {
        hit = {part.distance, part.u + part.v, part.v};
        found = true;
    }
    if (rayTriangleIntersect(origin, direction, tl, br, Vector(quad.bl), part) &&
        counts(part.distance, behind, orAtIt) && !(found && hit.distance <= part.distance)) {
        hit = {part.distance, part.u, part.u + part.v};
        found = true;
    }
    return found;
}

}  // namespace kelmora
