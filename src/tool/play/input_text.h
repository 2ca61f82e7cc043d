#pragma once

#include <optional>
#include <string>

#include "platform/window_event.h"

namespace kelmora {

// The event as a line of a recorded input without the number of its update; empty for keys without a name.
std::string recordedLine(const WindowEvent& event);

// The virtual-key code of a name of the key tables, in letters of either case.
std::optional<int> keyCodeOf(std::string name);

}  // namespace kelmora
