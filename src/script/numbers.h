#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "script/variable.h"

namespace kelmora {

// Truncates towards zero, holds the result to the limits of 32 bits, and makes 0 of NaN.
std::int32_t saturatingInt(double value);

// Int, Float and Bool as a number; any other type raises "Expected a numeric value".
std::int32_t toInt(const Variable& value);
double toDouble(const Variable& value);

// Whole-string parses: nothing may be left over and nothing may overflow.
bool parseIntStrict(std::string_view text, std::int32_t& value);
bool parseFloatStrict(const std::string& text, float& value);

// A table key as a script value: Int, Float or String by what its text parses as.
Variable keyValueFromText(StringObject& text);

// A position for the 1-based containers: an Int, or a Float with a whole value of at most 2^31 in size.
bool isWholeIndex(const Variable& key, std::int64_t& index);

}  // namespace kelmora
