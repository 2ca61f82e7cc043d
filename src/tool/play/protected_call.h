#pragma once

#include <vector>

#include "script/vesper_script.h"

namespace kelmora {

// Calls by script's own pcall, so that what fails does not reach the game that the call comes into the midst
// of; what it gives back. Raises the failure's words as std::runtime_error here, as a TracedError
// where its way is known.
std::vector<Variable> protectedCall(VesperScript& engine, const Variable& function,
                                    const std::vector<Variable>& arguments);

}  // namespace kelmora
