#pragma once

#include <cstdint>

#include "image/plush_image.h"

// Figures in one colour, mixed over a picture as a blended blit would be and cut at its edges. Edges that are
// not upright are smooth, with the same bytes on every system. A figure without area draws nothing.
namespace kelmora {

struct PlushColour {
    unsigned char r = 0;
    unsigned char g = 0;
    unsigned char b = 0;
    unsigned char a = 255;
};

struct BoxShape {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t radius = 0;  // of the corners, at most half of the shorter side
};

void fillBox(const PlushImage& image, const BoxShape& box, PlushColour colour);
// The outline alone, so thick inwards from the box's edge.
void outlineBox(const PlushImage& image, const BoxShape& box, std::int32_t thickness, PlushColour colour);

struct LineShape {
    std::int32_t x1 = 0;
    std::int32_t y1 = 0;
    std::int32_t x2 = 0;
    std::int32_t y2 = 0;
    double thickness = 1;  // pixels; the ends are round
};

// From the middle of one pixel to the middle of another.
void drawLine(const PlushImage& image, const LineShape& line, PlushColour colour);

}  // namespace kelmora
