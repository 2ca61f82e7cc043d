#pragma once

#include <cstdint>
#include <vector>

#include "image/plush_image.h"

namespace kelmora {

// Which source column each of a stretch of target columns shows; the same for all rows of an upright draw.
struct ColumnMap {
    std::int32_t first = 0;  // target column of the first entry
    std::int32_t count = 0;
    std::int32_t firstSource = 0;
    std::vector<std::int32_t> source;  // all source columns; empty when they just count up from `firstSource`
};

// Draws one row of `source` along the map.
void drawMapped(const PlushImage& target, std::int32_t targetRow, const PlushImage& source,
                std::int32_t sourceRow, const ColumnMap& columns, bool blend);

}  // namespace kelmora
