#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kelmora {

// Where a picture is drawn inside a client area, in client pixels.
struct Letterbox {
    int x = 0;
    int y = 0;
    int width = 1;
    int height = 1;
};

// The largest centred rectangle with the picture's shape. All sizes are at least 1.
inline Letterbox letterboxOf(int clientWidth, int clientHeight, int imageWidth, int imageHeight) {
    const double scale =
        std::max(0.0001, std::min(static_cast<double>(clientWidth) / static_cast<double>(imageWidth),
                                  static_cast<double>(clientHeight) / static_cast<double>(imageHeight)));
    const auto drawnSize = [scale](int imageSize, int clientSize) {
        return static_cast<int>(
            std::clamp(std::lround(scale * imageSize), 1L, static_cast<long>(clientSize)));
    };
    Letterbox box;
    box.width = drawnSize(imageWidth, clientWidth);
    box.height = drawnSize(imageHeight, clientHeight);
    box.x = (clientWidth - box.width) / 2;
    box.y = (clientHeight - box.height) / 2;
    return box;
}

// How a picture gets the size that it is drawn at.
enum class Scaling : std::uint8_t {
    nearest,  // the nearest pixel
    smooth,   // mixed from the nearest four pixels
    whole     // each pixel as a square of whole size, where there is room for the picture at all
};

inline Letterbox letterboxOf(Scaling scaling, int clientWidth, int clientHeight, int imageWidth,
                             int imageHeight) {
    const int times = std::min(clientWidth / imageWidth, clientHeight / imageHeight);
    if (scaling != Scaling::whole || times < 1)
        return letterboxOf(clientWidth, clientHeight, imageWidth, imageHeight);
    const int width = imageWidth * times;
    const int height = imageHeight * times;
    return {(clientWidth - width) / 2, (clientHeight - height) / 2, width, height};
}

// The picture's column (or row) that a drawn column shows.
inline int sourcePosition(int drawnPosition, int imageSize, int drawnSize) {
    return static_cast<int>(std::int64_t{drawnPosition} * imageSize / drawnSize);
}

// The picture's column (or row) under a client position: clamped into the drawn part, with both ends of the
// drawn part on both ends of the picture, and rounded to the nearest between them.
inline int imagePosition(int clientPosition, int drawnStart, int drawnSize, int imageSize) {
    if (drawnSize < 2 || imageSize < 2) return 0;
    const std::int64_t last = drawnSize - 1;
    const std::int64_t position =
        std::clamp(std::int64_t{clientPosition} - drawnStart, std::int64_t{0}, last);
    const std::int64_t mapped = (position * (imageSize - 1) + last / 2) / last;
    return static_cast<int>(std::min<std::int64_t>(mapped, imageSize - 1));
}

}  // namespace kelmora
