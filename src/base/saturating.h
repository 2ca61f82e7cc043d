#pragma once

#include <cstdint>

namespace kelmora {

// Truncates towards zero, holds the result to the limits of 32 bits, and makes 0 of NaN.
inline std::int32_t saturatingInt(double value) {
    if (value >= 2147483648.0) return INT32_MAX;
    if (value < -2147483648.0) return INT32_MIN;
    return value == value ? static_cast<std::int32_t>(value) : 0;
}

// The same for 64 bits.
inline std::int64_t saturatingInt64(double value) {
    if (value >= 9223372036854775808.0) return INT64_MAX;
    if (value < -9223372036854775808.0) return INT64_MIN;
    return value == value ? static_cast<std::int64_t>(value) : 0;
}

}  // namespace kelmora
