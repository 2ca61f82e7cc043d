#pragma once

#include "bindings/runtime.h"

namespace kelmora {

// Decides where what a game keeps goes: into its Resources/volatile, or for a packed game where that cannot
// be written to into a folder of the game's name among the user's own data. The scripts see no difference. To
// be called before the game starts.
void chooseKeptFolder(Runtime& runtime);

}  // namespace kelmora
