#pragma once

#include <span>
#include <string>

#include "tool/tool_command.h"

namespace kelmora {

// In the order in which the usage shows them.
std::span<const ToolCommand* const> toolCommands();
// Raises UsageError, with the nearest name that there is.
const ToolCommand& findCommand(const std::string& name);

}  // namespace kelmora
