#pragma once

#include <string>

#include "script/error_trail.h"
#include "script/variable.h"

namespace kelmora {

// What a protected call gives: false and the message, or true and the results.
Variable protectedFailure(std::string message, ErrorTrail& trail);
Variable protectedSuccess(const Variable& result);

}  // namespace kelmora
