#pragma once

#include <span>
#include <string>

#include "base/host_services.h"

namespace kelmora {

// `vesper test`: plays the tests of a game and reports. The exit code: 1 when one failed.
int testGame(HostServices& host, std::span<const unsigned char> bootText, std::span<const std::string> words);

}  // namespace kelmora
