#pragma once

#include <span>
#include <string>

#include "host/registration.h"

namespace kelmora {

// The executable's directory with its last separator, from the platform or else from the first argument;
// "./" when neither knows it.
std::string findBaseDirectory(int argc, const char* const* argv);

// The path that the boot script counts as its own; no file of that name is read.
std::string startupSourcePath(const Runtime& runtime);

// Runs a compiled boot script as if its source stood at the path. The image outlives the runtime.
void runEmbeddedStartupScript(Runtime& runtime, std::span<const unsigned char> image,
                              const std::string& sourcePath);

// The whole life of the executable; gives its exit code. A failure goes to standard error, and
// to where the player stands.
int runKelmora(std::span<const unsigned char> bootImage, int argc, const char* const* argv);

}  // namespace kelmora
