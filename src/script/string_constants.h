#pragma once

#include <string>

#include "script/variable.h"

namespace kelmora {

// The String value of a constant in a source. Short ones with the same text share one object, so that a key
// in a table is recognised by its address. They live as long as the process.
Variable stringConstant(std::string text);

}  // namespace kelmora
