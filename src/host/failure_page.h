#pragma once

#include <functional>
#include <string>

#include "bindings/runtime.h"

namespace kelmora {

// Whether this is a game as players get it: the tool that packs games marks them by the file
// Resources/packed.txt.
bool isPacked(const Runtime& runtime);

// A failure that ended a game, where the player stands: an author sees all of it, in the game's window if
// there is one; of a packed game it goes to `error.txt` beside the saves, and the player is told calmly.
// `update` is an update of the window. True when the game is to be started anew. It has been on standard
// error before.
bool showFailure(Runtime& runtime, const std::string& failure, const std::function<void()>& update);

}  // namespace kelmora
