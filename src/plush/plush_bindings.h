#pragma once

#include "plush/plush_image.h"
#include "script/binding.h"

namespace kelmora {

class VesperScript;

// The `Plush` module, whose shaders may call functions of the engine.
Variable makePlushModule(VesperScript& engine);

// The image argument of a binding that only asks for a non-null handle with pixels; the registry is not
// consulted. Raises "<name> must be a valid image".
PlushImage& weakImage(const BindingCall& call, std::size_t index, std::string_view name);

}  // namespace kelmora
