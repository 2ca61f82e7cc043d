#pragma once

#include <cstdint>

#include "plush/scene/scene.h"

namespace kelmora {

// Draws the scene by polygons with a depth buffer, a colour for each pixel whatever the accuracy. Opaque
// scenes look as ray casting shows them with accuracy 1; nothing is mirrored, and partly clear faces are
// mixed whole, far ones first.
void projectScene(const Scene& scene, PlushImage& output, std::int32_t workers);

}  // namespace kelmora
