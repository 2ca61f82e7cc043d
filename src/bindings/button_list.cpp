#include "bindings/button_list.h"

#include <algorithm>

namespace kelmora {
namespace {

bool strictlyBetween(int value, int a, int b) {
    return value > std::min(a, b) && value < std::max(a, b);
}

}  // namespace

std::int32_t checkbounds(int x, int y, const std::vector<buttonVec>* list) {
    for (const buttonVec& button : *list)
        if (strictlyBetween(x, button.x1, button.x2) && strictlyBetween(y, button.y1, button.y2))
            return button.result;
    return 0;
}

}  // namespace kelmora
