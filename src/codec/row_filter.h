#pragma once

#include <cstdlib>

namespace vh::png {

enum RowFilter : unsigned char { FilterNone, FilterSub, FilterUp, FilterAverage, FilterPaeth, FilterCount };

// Whichever of left, upper and upper-left is nearest to left + upper - upper-left; ties go in that order.
inline unsigned char paeth_predictor(int left, int upper, int upper_left) {
    const int from_left = std::abs(upper - upper_left);
    const int from_upper = std::abs(left - upper_left);
    const int from_upper_left = std::abs(left + upper - 2 * upper_left);
    if (from_left <= from_upper && from_left <= from_upper_left) return static_cast<unsigned char>(left);
    return static_cast<unsigned char>(from_upper <= from_upper_left ? upper : upper_left);
}

}  // namespace vh::png
