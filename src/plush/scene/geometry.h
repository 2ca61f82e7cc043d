#pragma once

#include <cmath>
#include <cstdint>

namespace kelmora {

// A point or direction as scenes store it, in world units. Larger z is higher.
struct Vec3 {
    float x = 0;
    float y = 0;
    float z = 0;
};

// The same while a picture is worked out: offsets of a millionth have to survive far from the origin.
struct Vector {
    double x = 0;
    double y = 0;
    double z = 0;

    Vector() = default;
    Vector(double xValue, double yValue, double zValue) : x(xValue), y(yValue), z(zValue) {}
    explicit Vector(const Vec3& point)
        : x(static_cast<double>(point.x)), y(static_cast<double>(point.y)), z(static_cast<double>(point.z)) {}

    bool isFinite() const { return std::isfinite(x) && std::isfinite(y) && std::isfinite(z); }
};

// Colours, whose channels are 0 to 255, and light.
inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator*(const Vec3& a, float factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}

inline Vector operator+(const Vector& a, const Vector& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vector operator-(const Vector& a, const Vector& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vector operator*(const Vector& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}
inline double dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vector cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
// A vector without length stays as it is.
inline Vector normalised(const Vector& vector) {
    const double squared = dot(vector, vector);
    return squared > 0 ? vector * (1 / std::sqrt(squared)) : vector;
}

struct QuadBox {
    float minX = 0;
    float maxX = 0;
    float minY = 0;
    float maxY = 0;
    float minZ = 0;
    float maxZ = 0;
};

// A textured face with four corners: left top, right top, right bottom, left bottom.
struct Quad {
    Vec3 tl;
    Vec3 tr;
    Vec3 br;
    Vec3 bl;
    std::int32_t texture = 0;
    // What finalizeQuad derives. The normal of a quad without area is 0.
    Vec3 normal;
    QuadBox box;

    bool isFinite() const;
};

// Light of a colour (1 is full) that reaches as far as its radius. Its z is a height in the world.
struct LightSource {
    float x = 0;
    float y = 0;
    float z = 0;
    float r = 0;
    float g = 0;
    float b = 0;
    float radius = 0;
};

Vector computeNormal(const Vector& a, const Vector& b, const Vector& c);
// Derives the normal and the box, which is a little wider than the corners.
void finalizeQuad(Quad& quad);

// Where a ray meets a triangle, from either side.
struct TriangleHit {
    double distance;  // in lengths of the direction; may be negative
    double u;         // weight of b
    double v;         // weight of c
};
[[nodiscard]] bool rayTriangleIntersect(const Vector& origin, const Vector& direction, const Vector& a,
                                        const Vector& b, const Vector& c, TriangleHit& hit);

// Where a ray first meets a quad in front of its origin; u and v are 0 to 1 along the top and left edges.
struct QuadHit {
    double distance;
    double u;
    double v;
};
// Meets nearer than `behind` do not count.
[[nodiscard]] bool rayQuadIntersect(const Vector& origin, const Vector& direction, const Quad& quad,
                                    double behind, bool orAtIt, QuadHit& hit);

}  // namespace kelmora
