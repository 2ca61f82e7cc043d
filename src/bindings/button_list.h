#pragma once

#include <cstdint>
#include <vector>

namespace kelmora {

// A rectangle that scripts registered, corners as they were given, and what a hit on it means.
struct buttonVec {
    std::int32_t x1;
    std::int32_t x2;
    std::int32_t y1;
    std::int32_t y2;
    std::int32_t result;
};

// The result of the first rectangle that holds the point strictly inside, else 0.
std::int32_t checkbounds(int x, int y, const std::vector<buttonVec>* list);

}  // namespace kelmora
