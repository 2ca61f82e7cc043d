#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "plush/shader/pixel_map.h"

namespace kelmora::plush_shader::detail {

// One run of a program over a picture, as its workers share it.
struct PixelPass {
    const Program& program;
    SourcePicture source;  // what samples read
    unsigned char* target;
    std::int32_t targetWidth;
    std::optional<PixelMap> map;   // none in place: the target's own pixels go in
    std::vector<float> registers;  // as each worker starts

    unsigned char* targetRow(std::int32_t y) const {
        return target + static_cast<std::size_t>(y) * static_cast<std::size_t>(targetWidth) * 4;
    }
    // Pixels of the row that target row y reads.
    const unsigned char* inputRow(std::int32_t y) const { return map ? map->row(y) : targetRow(y); }
    std::int32_t inputColumn(std::int32_t x) const { return map ? map->column(x) : x; }
    // The position as the shader sees it.
    float inputX(std::int32_t x) const { return map ? map->x(x) : static_cast<float>(x); }
    float inputY(std::int32_t y) const { return map ? map->y(y) : static_cast<float>(y); }
};

// Rows [first, last) of the target, pixel by pixel. Registers keep their values from pixel to pixel.
void runRowsPlainly(const PixelPass& pass, std::int32_t first, std::int32_t last);

}  // namespace kelmora::plush_shader::detail
