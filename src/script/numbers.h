#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/number_parse.h"
#include "base/saturating.h"
#include "script/variable.h"

namespace kelmora {

// Int, Float and Bool as a number; any other type raises "Expected a numeric value".
std::int32_t toInt(const Variable& value);
double toDouble(const Variable& value);

// A table key as a script value: Int, Float or String by what its text parses as.
Variable keyValueFromText(StringObject& text);

// A position for the 1-based containers: an Int, or a Float with a whole value of at most 2^31 in size.
bool isWholeIndex(const Variable& key, std::int64_t& index);

}  // namespace kelmora
