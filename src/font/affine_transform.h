#pragma once

#include "font/outline_rasteriser.h"

namespace kelmora {

struct AffineTransform {
    Point apply(double x, double y) const { return {xx * x + xy * y + dx, yx * x + yy * y + dy}; }
    // The same without the translation.
    Point turn(double x, double y) const { return {xx * x + xy * y, yx * x + yy * y}; }

    double xx = 1;
    double xy = 0;
    double yx = 0;
    double yy = 1;
    double dx = 0;
    double dy = 0;
};

}  // namespace kelmora
