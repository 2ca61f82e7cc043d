#pragma once

#include <span>
#include <string>

#include "bindings/runtime.h"

namespace kelmora {

// `vesper check`: reports on scripts, and on every script of the folders among the paths. Each path of a game
// is checked with the rest of that game's scripts and the boot script in view. The exit code: 1 when there
// are errors.
int checkScripts(Runtime& runtime, const std::string& bootScript, std::span<const std::string> paths,
                 bool asJson);

}  // namespace kelmora
