#pragma once

#include <cstdint>
#include <string>

namespace kelmora {

// As the guest languages print numbers: integers in decimal, floats with 14 significant digits in the general
// form, infinities as "inf" and "-inf", NaN as "nan" whatever its sign.
std::string integerText(std::int64_t value);
std::string floatText(double value);

}  // namespace kelmora
