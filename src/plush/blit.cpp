#include "plush/blit.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "image/row_workers.h"
#include "plush/blit_transform.h"
#include "plush/draw_rows.h"

namespace kelmora {
namespace {

// What drawing rows as they are costs, about.
constexpr std::int64_t pixelsPerNanosecond = 6;

// First and end of [0, length) once it is moved by `offset` and cut to [0, limit).
std::int32_t firstInside(std::int32_t offset) {
    return offset < 0 ? static_cast<std::int32_t>(-std::int64_t{offset}) : 0;
}
std::int32_t endInside(std::int32_t offset, std::int32_t length, std::int32_t limit) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(length, std::int64_t{limit} - offset));
}

void copyUnclipped(const Blit& blit) {
    const std::size_t rowBytes = static_cast<std::size_t>(blit.source.width) * 4;
    for (std::int32_t row = 0; row < blit.source.height; ++row)
        std::memmove(pixelAt(blit.target, blit.x, blit.y + row), pixelAt(blit.source, 0, row), rowBytes);
}

void drawClippedRows(const Blit& blit, std::int32_t left, std::int32_t right, std::int32_t first,
                     std::int32_t last) {
    for (std::int32_t row = first; row < last; ++row)
        drawRun(pixelAt(blit.target, blit.x + left, blit.y + row), pixelAt(blit.source, left, row),
                static_cast<std::size_t>(right - left), blit.blend, blit.ontoItself());
}

void drawClipped(const Blit& blit) {
    const std::int32_t left = firstInside(blit.x);
    const std::int32_t right = endInside(blit.x, blit.source.width, blit.target.width);
    const std::int32_t top = firstInside(blit.y);
    const std::int32_t bottom = endInside(blit.y, blit.source.height, blit.target.height);
    if (left >= right || top >= bottom) return;
    const std::int64_t pixels = std::int64_t{blit.source.width} * blit.source.height;
    // The whole image is shared out, rows outside the target among them.
    runRows({blit.source.height, blitWorkers(blit.source.height, pixels), pixels / pixelsPerNanosecond, true},
            [&](std::int32_t first, std::int32_t last) {
                drawClippedRows(blit, left, right, std::max(first, top), std::min(last, bottom));
            });
}

bool isTurned(float rotation) {
    float angle = std::fmod(rotation, 360.0f);
    if (angle < 0) angle += 360.0f;
    return !(angle < 1e-5f || angle > 359.999f);
}

bool liesInside(const Blit& blit) {
    return blit.x >= 0 && blit.y >= 0 && std::int64_t{blit.x} + blit.source.width <= blit.target.width &&
           std::int64_t{blit.y} + blit.source.height <= blit.target.height;
}

}  // namespace

bool reachesTarget(const Blit& blit) {
    return blit.x < blit.target.width && blit.y < blit.target.height &&
           std::int64_t{blit.x} + blit.source.width >= 1 && std::int64_t{blit.y} + blit.source.height >= 1;
}

void blitImage(const Blit& blit) {
    if (!reachesTarget(blit) || blit.scale == 0) return;
    const bool turned = isTurned(blit.rotation);
    if (turned || blit.scale != 1)
        blitTransformed(blit, turned);
    else if (!blit.blend && liesInside(blit))
        copyUnclipped(blit);
    else
        drawClipped(blit);
}

}  // namespace kelmora
