#pragma once

#include "bindings/runtime.h"

namespace kelmora {

// Fills the interpreter with the script modules, the environment globals and the input globals.
void registerFunctions(Runtime& runtime);

void registerGlobalHelpers(VesperScript& engine);
void publishEnvironmentGlobals(VesperScript& engine);

}  // namespace kelmora
