#pragma once

#include "plush/plush_image.h"
#include "script/binding.h"

namespace kelmora {

// The `Plush` module.
Variable makePlushModule();

// The image argument of a binding that only asks for a non-null handle with pixels; the registry is not
// consulted. Raises "<name> must be a valid image".
PlushImage& weakImage(const BindingCall& call, std::size_t index, std::string_view name);

}  // namespace kelmora
