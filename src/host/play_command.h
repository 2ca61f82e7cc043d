#pragma once

#include <span>
#include <string>

#include "base/host_services.h"

namespace kelmora {

// `vesper play`: the exit code. Raises UsageError for words that make no sense.
int playGame(HostServices& host, std::span<const unsigned char> bootText, std::span<const std::string> words);

}  // namespace kelmora
