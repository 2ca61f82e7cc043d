#pragma once

#include "plush/blit.h"

namespace kelmora {

// Draws scaled and, when `turned`, rotated.
void blitTransformed(const Blit& blit, bool turned);

}  // namespace kelmora
