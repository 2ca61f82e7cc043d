#pragma once

#include <algorithm>
#include <cstdint>

#include "plush/shader/machine.h"

namespace kelmora::plush_shader {

// Finds the nearest source pixel of each pixel of a target of another size.
struct PixelMap {
    SourcePicture source;
    float scaleX;  // source pixels for each target pixel
    float scaleY;

    PixelMap(const SourcePicture& picture, std::int32_t targetWidth, std::int32_t targetHeight)
        : source(picture),
          scaleX(static_cast<float>(picture.width) / static_cast<float>(targetWidth)),
          scaleY(static_cast<float>(picture.height) / static_cast<float>(targetHeight)) {}

    // A target position in the source's coordinates.
    float x(std::int32_t targetX) const { return scaleX * static_cast<float>(targetX); }
    float y(std::int32_t targetY) const { return scaleY * static_cast<float>(targetY); }
    std::int32_t column(std::int32_t targetX) const { return nearest(x(targetX), source.width); }
    const unsigned char* row(std::int32_t targetY) const {
        return source.pixels + static_cast<std::size_t>(nearest(y(targetY), source.height)) *
                                   static_cast<std::size_t>(source.width) * 4;
    }

private:
    static std::int32_t nearest(float position, std::int32_t size) {
        if (position >= static_cast<float>(size)) return size - 1;
        return std::min(static_cast<std::int32_t>(position), size - 1);
    }
};

}  // namespace kelmora::plush_shader
