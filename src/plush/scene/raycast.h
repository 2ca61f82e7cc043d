#pragma once

#include <cstdint>

#include "plush/scene/scene.h"

namespace kelmora {

// Draws the scene as its player sees it into the whole output, opaque: one ray for each square of `accuracy`
// pixels. Rows of squares are shared among up to `workers` workers; the bytes are the same for any number.
void renderScene(const Scene& scene, PlushImage& output, std::int32_t workers);

// The same bytes in the plainest way, to be compared with.
void renderScenePlainly(const Scene& scene, PlushImage& output, std::int32_t workers);

}  // namespace kelmora
