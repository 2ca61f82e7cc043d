#pragma once

#include <cstdint>

#include "script/token.h"

namespace kelmora {

// What an operator makes of two integers, wrapped to 32 bits. False where it gives none here: a divisor of 0,
// the quotient that overflows, and every other operator.
inline bool applyToIntegers(TokenKind operation, std::int32_t left, std::int32_t right,
                            std::int32_t& result) {
    const auto a = static_cast<std::uint32_t>(left);
    const auto b = static_cast<std::uint32_t>(right);
    const bool divides = b + 1 > 1;  // neither 0 nor -1
    switch (operation) {
        case TokenKind::Plus:
            result = static_cast<std::int32_t>(a + b);
            return true;
        case TokenKind::Minus:
            result = static_cast<std::int32_t>(a - b);
            return true;
        case TokenKind::Multiply:
            result = static_cast<std::int32_t>(a * b);
            return true;
        case TokenKind::IntegerDivide:
            if (divides) result = left / right;
            return divides;
        case TokenKind::Remainder:
            if (divides) result = left % right;
            return divides;
        default:
            return false;
    }
}

}  // namespace kelmora
