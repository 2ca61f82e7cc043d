#pragma once

#include "script/binding.h"

namespace kelmora {

// The `Font` module. Scripts own the fonts they load.
Variable makeFontModule();

}  // namespace kelmora
