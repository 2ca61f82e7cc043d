#pragma once

#include "script/binding.h"

namespace kelmora {

// Members of the `Plush` module that draw one image onto another.
Variable blitImageBinding(const BindingCall& call);
Variable blitImageRectBinding(const BindingCall& call);
Variable skewBinding(const BindingCall& call);

}  // namespace kelmora
