#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace kelmora {

// A double that stands for an integer: finite and within an epsilon of a whole number that 64 bits hold. The
// guest languages hand such results on as integers.
inline bool isWholeResult(double value, std::int64_t& whole) {
    const double nearest = std::round(value);
    if (!(nearest >= -9223372036854775808.0 && nearest < 9223372036854775808.0)) return false;
    if (!(std::fabs(value - nearest) <= std::numeric_limits<double>::epsilon())) return false;
    whole = static_cast<std::int64_t>(nearest);
    return true;
}

}  // namespace kelmora
