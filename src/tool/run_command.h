#pragma once

#include <span>
#include <string>

#include "bindings/runtime.h"

namespace kelmora {

// Runs a source or image of any of the languages: its path, then its arguments. The exit code.
int runFile(Runtime& runtime, std::span<const std::string> words);

}  // namespace kelmora
