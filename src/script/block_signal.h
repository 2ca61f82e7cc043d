#pragma once

#include <cstdint>

#include "script/variable.h"

namespace kelmora {

// How a block ended, and what it returned.
struct BlockSignal {
    enum class Kind : std::uint8_t { Normal = 0, Return = 1, Break = 2, Jump = 3 };

    Kind kind = Kind::Normal;
    Variable value;  // of a return

    bool isNormal() const { return kind == Kind::Normal; }
    // Ends a loop that the signal came out of: a break is used up here, return and jump go on upwards.
    bool endsLoop() {
        if (kind == Kind::Normal) return false;
        if (kind == Kind::Break) kind = Kind::Normal;
        return true;
    }
};

}  // namespace kelmora
