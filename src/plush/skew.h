#pragma once

#include <cstdint>

#include "image/plush_image.h"

namespace kelmora {

// Stretches the whole input over the quadrilateral of the output with these corners (left top, right top,
// left bottom, right bottom), as two triangles that share the edge from the right top to the left bottom.
// Nearest pixels replace what was there, alpha and all; the rest of the output stays. Does nothing for null
// images, images without pixels and quadrilaterals without area.
void skewImage(std::int32_t ltx, std::int32_t lty, std::int32_t rtx, std::int32_t rty, std::int32_t lbx,
               std::int32_t lby, std::int32_t rbx, std::int32_t rby, PlushImage* input, PlushImage* output);

}  // namespace kelmora
