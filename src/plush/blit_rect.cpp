#include <algorithm>
#include <cmath>

#include "base/saturating.h"
#include "plush/blit.h"
#include "plush/draw_rows.h"
#include "plush/scaled_rows.h"

namespace kelmora {
namespace {

// One axis of the draw: a stretch of the source, and the target positions it lands on.
struct Axis {
    std::int32_t sourceFirst;
    std::int32_t sourceLength;
    std::int32_t offset;  // target position of the first, perhaps outside
    std::int32_t first;
    std::int32_t last;

    bool empty() const { return first >= last; }
    std::int32_t sourceAt(std::int32_t position, float scale) const {
        const auto distance = static_cast<float>(std::int64_t{position} - offset);
        return sourceFirst + std::min(sourceLength - 1, saturatingInt(distance / scale));
    }
};

Axis makeAxis(std::int32_t sourceStart, std::int32_t length, std::int32_t sourceSize, std::int32_t offset,
              std::int32_t targetSize, float scale) {
    const std::int32_t sourceFirst = std::max(sourceStart, 0);
    const auto sourceEnd =
        static_cast<std::int32_t>(std::min(std::int64_t{sourceStart} + length, std::int64_t{sourceSize}));
    if (sourceFirst >= sourceEnd) return {};
    const std::int32_t sourceLength = sourceEnd - sourceFirst;
    const std::int64_t drawn =
        std::max(saturatingInt(std::round(scale * static_cast<float>(sourceLength))), 1);
    const std::int64_t last = std::min<std::int64_t>(offset + drawn, targetSize);
    return {sourceFirst, sourceLength, offset, std::max(offset, 0),
            static_cast<std::int32_t>(std::max<std::int64_t>(last, 0))};
}

ColumnMap columnsOf(const Axis& across, float scale) {
    // Beyond this whole numbers are no longer all floats.
    constexpr std::int32_t exactLimit = 1 << 24;
    ColumnMap columns{across.first, across.last - across.first, across.sourceAt(across.first, scale), {}};
    if (scale == 1 && across.sourceLength <= exactLimit) return columns;
    columns.source.reserve(static_cast<std::size_t>(columns.count));
    for (std::int32_t x = across.first; x < across.last; ++x)
        columns.source.push_back(across.sourceAt(x, scale));
    return columns;
}

}  // namespace

void blitImageRect(const RectBlit& blit) {
    if (blit.width < 1 || blit.height < 1 || blit.scale == 0) return;
    const Axis across =
        makeAxis(blit.sourceX, blit.width, blit.source.width, blit.x, blit.target.width, blit.scale);
    const Axis down =
        makeAxis(blit.sourceY, blit.height, blit.source.height, blit.y, blit.target.height, blit.scale);
    if (across.empty() || down.empty()) return;
    const ColumnMap columns = columnsOf(across, blit.scale);
    for (std::int32_t y = down.first; y < down.last; ++y)
        drawMapped(blit.target, y, blit.source, down.sourceAt(y, blit.scale), columns, blit.blend);
}

}  // namespace kelmora
