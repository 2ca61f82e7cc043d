#pragma once

#include <string>

#include "script/variable.h"

namespace kelmora {

// What a protected call gives: false and the message, or true and the results.
Variable protectedFailure(std::string message);
Variable protectedSuccess(const Variable& result);

}  // namespace kelmora
