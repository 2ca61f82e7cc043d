#pragma once

#include <span>

#include "plush/scene/geometry.h"

// Tests that scripts make on faces.
namespace kelmora {

// Height of a quad over a point of the ground; false when none of its two triangles is there.
[[nodiscard]] bool heightOnQuadAtXY(const Quad& quad, double x, double y, double& height);
// Mean of all corners; 0 for no quads.
Vector quadTableCentre(std::span<const Quad> quads);
// Whether the point lies in or on the box that six faces close.
bool quadBoxContainsPoint(std::span<const Quad> faces, const Vector& point);
// Whether a viewer who looks in a direction sees a point within an angle of view. Radians; the whole angle.
bool isInView(double viewerX, double viewerY, double x, double y, double direction, double fieldOfView);

}  // namespace kelmora
