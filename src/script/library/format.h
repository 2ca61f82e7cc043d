#pragma once

#include "script/library/library.h"

namespace kelmora {

// string.format: the first argument is the format text.
std::string formatValues(Arguments arguments);

}  // namespace kelmora
