#pragma once

#include "script/variable.h"

namespace kelmora {

// The `Audio` module.
Variable makeAudioModule();

}  // namespace kelmora
