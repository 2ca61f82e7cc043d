#pragma once

#include "script/variable.h"

namespace kelmora {

// `height <- base`: the base raised to itself `height` times.
Variable tetration(const Variable& height, const Variable& base);
// `base -> count`: tetration repeated `count` times.
Variable pentation(const Variable& base, const Variable& count);

}  // namespace kelmora
