#pragma once

#include <cstdint>

#include "image/plush_image.h"

namespace kelmora {

// One image drawn onto another. Both have pixels. They may be the same image: then pixels are drawn one by
// one in the order of rows and columns, and later ones read what earlier ones left.
struct Blit {
    PlushImage& target;
    const PlushImage& source;
    // Top left corner on the target, before turning.
    std::int32_t x = 0;
    std::int32_t y = 0;
    bool blend = false;
    float scale = 1;
    float rotation = 0;  // degrees, clockwise, about the centre of the scaled image

    bool ontoItself() const { return target.pixels == source.pixels; }
};

// False when the unscaled, unturned image would lie wholly outside; such images are not drawn at any scale.
bool reachesTarget(const Blit& blit);

// Nearest pixels, no filtering. Large blits use up to `threadCount` workers.
void blitImage(const Blit& blit);

// A rectangle of the source, drawn with its top left at (x, y) of the target.
struct RectBlit {
    PlushImage& target;
    const PlushImage& source;
    std::int32_t sourceX = 0;
    std::int32_t sourceY = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t x = 0;
    std::int32_t y = 0;
    bool blend = false;
    float scale = 1;

    bool ontoItself() const { return target.pixels == source.pixels; }
};

// The rectangle is cut to the source before it is scaled, so a cut draws less and never shifts. Runs on the
// caller.
void blitImageRect(const RectBlit& blit);

}  // namespace kelmora
