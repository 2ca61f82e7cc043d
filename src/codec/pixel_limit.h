#pragma once

#include <cstddef>
#include <cstdint>

namespace vh::png {

constexpr std::size_t rgbaSize = 4;

constexpr std::uint64_t pixelLimit = std::uint64_t{1} << 30;  // pictures stay below it

constexpr bool within_pixel_limit(std::uint32_t width, std::uint32_t height) {
    return std::uint64_t{width} * height < pixelLimit;
}

}  // namespace vh::png
