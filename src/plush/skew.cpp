#include "plush/skew.h"

#include <algorithm>
#include <cmath>

#include "image/image_registry.h"
#include "image/row_workers.h"
#include "plush/draw_rows.h"
#include "plush/row_kernels.h"

namespace kelmora {
namespace {

struct Corner {
    float x;
    float y;
};

// The corners P, Q and R of TriangleRow.
struct Triangle {
    Corner p;
    Corner q;
    Corner r;
    float inverse = 0;

    Triangle(Corner pCorner, Corner qCorner, Corner rCorner) : p(pCorner), q(qCorner), r(rCorner) {
        const float doubledArea = (q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x);
        if (std::abs(doubledArea) >= 1e-5f) inverse = 1 / doubledArea;
    }

    TriangleRow at(float y) const {
        return {inverse, p.x, q.x, r.x, r.y - p.y, (y - p.y) * (r.x - p.x), q.y - y, r.y - y};
    }
};

// Part of the output outside which no pixel can be in a triangle.
struct Reach {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;
};

// With differences of coordinates below 4096 their products are exact, the first two weights have the right
// sign and the third is off by far less than a pixel; then the box of the corners and a pixel around it holds
// all that the weights let in. Larger ones may round pixels from anywhere into a triangle.
Reach reachOf(const Corner (&corners)[4], const PlushImage& output) {
    constexpr float exactLimit = 2048;
    Reach reach{0, 0, output.width, output.height};
    Corner least = corners[0];
    Corner most = corners[0];
    for (const Corner corner : corners) {
        least = {std::min(least.x, corner.x), std::min(least.y, corner.y)};
        most = {std::max(most.x, corner.x), std::max(most.y, corner.y)};
    }
    const bool exact = output.width <= 2048 && output.height <= 2048 &&
                       std::min(least.x, least.y) >= -exactLimit && std::max(most.x, most.y) <= exactLimit;
    if (!exact) return reach;
    return {std::max(static_cast<std::int32_t>(least.x) - 1, 0),
            std::max(static_cast<std::int32_t>(least.y) - 1, 0),
            std::min(static_cast<std::int32_t>(most.x) + 2, output.width),
            std::min(static_cast<std::int32_t>(most.y) + 2, output.height)};
}

struct Skew {
    Triangle upper;
    Triangle lower;
    Reach reach;
    const PlushImage& input;
    PlushImage& output;
    const RowKernels& kernels;
};

void processRows(const Skew& skew, std::int32_t first, std::int32_t last) {
    SkewRow row{{},
                {},
                static_cast<float>(skew.input.width - 1),
                static_cast<float>(skew.input.height - 1),
                skew.input.pixels,
                skew.input.width,
                skew.input.height};
    for (std::int32_t y = std::max(first, skew.reach.top); y < std::min(last, skew.reach.bottom); ++y) {
        row.upper = skew.upper.at(static_cast<float>(y));
        row.lower = skew.lower.at(static_cast<float>(y));
        skew.kernels.skew(row, skew.reach.left, skew.reach.right, pixelAt(skew.output, 0, y));
    }
}

bool hasPixels(const PlushImage* image) {
    return image && image->pixels && image->width >= 1 && image->height >= 1;
}

}  // namespace

void skewImage(std::int32_t ltx, std::int32_t lty, std::int32_t rtx, std::int32_t rty, std::int32_t lbx,
               std::int32_t lby, std::int32_t rbx, std::int32_t rby, PlushImage* input, PlushImage* output) {
    if (!hasPixels(input) || !hasPixels(output)) return;
    const auto corner = [](std::int32_t x, std::int32_t y) {
        return Corner{static_cast<float>(x), static_cast<float>(y)};
    };
    const Corner corners[] = {corner(ltx, lty), corner(rtx, rty), corner(lbx, lby), corner(rbx, rby)};
    const auto& [leftTop, rightTop, leftBottom, rightBottom] = corners;
    const bool plain =
        input->pixels == output->pixels || input->width > vectorSideLimit || input->height > vectorSideLimit;
    const Skew skew{{leftTop, rightTop, leftBottom},
                    {rightTop, rightBottom, leftBottom},
                    reachOf(corners, *output),
                    *input,
                    *output,
                    plain ? plainKernels : rowKernels()};
    if (skew.upper.inverse == 0 && skew.lower.inverse == 0) return;
    runRows({output->height, threadCount, std::int64_t{output->width} * output->height, true},
            [&skew](std::int32_t first, std::int32_t last) { processRows(skew, first, last); });
}

}  // namespace kelmora
