#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kelmora {

// One key that scripts can read. Codes are virtual-key codes; `otherCode` is a second key that means the
// same, or 0.
struct KeySlot {
    const char* name;
    std::uint8_t code;
    std::uint8_t otherCode;
};

inline constexpr KeySlot keyTable[] = {
    {"RETURN", 13, 0}, {"UP", 38, 0},       {"DOWN", 40, 0}, {"LEFT", 37, 0},   {"RIGHT", 39, 0},
    {"A", 'A', 0},     {"B", 'B', 0},       {"C", 'C', 0},   {"D", 'D', 0},     {"E", 'E', 0},
    {"F", 'F', 0},     {"G", 'G', 0},       {"H", 'H', 0},   {"I", 'I', 0},     {"J", 'J', 0},
    {"K", 'K', 0},     {"L", 'L', 0},       {"M", 'M', 0},   {"N", 'N', 0},     {"O", 'O', 0},
    {"P", 'P', 0},     {"Q", 'Q', 0},       {"R", 'R', 0},   {"S", 'S', 0},     {"T", 'T', 0},
    {"U", 'U', 0},     {"V", 'V', 0},       {"W", 'W', 0},   {"X", 'X', 0},     {"Y", 'Y', 0},
    {"Z", 'Z', 0},     {"1", '1', 0},       {"2", '2', 0},   {"3", '3', 0},     {"4", '4', 0},
    {"5", '5', 0},     {"6", '6', 0},       {"7", '7', 0},   {"8", '8', 0},     {"9", '9', 0},
    {"0", '0', 0},     {"MINUS", 189, 109}, {"BACK", 8, 0},  {"DELETE", 46, 0}, {"SPACE", 32, 0},
};
inline constexpr std::size_t keySlotCount = sizeof keyTable / sizeof keyTable[0];
static_assert(keySlotCount == 45);

// The one slot that scripts get under no name.
inline constexpr std::size_t keySlotMinus = 41;

// Which keys are down, by slot of `keyTable`.
struct KeyState {
    std::array<bool, keySlotCount> down{};
};

}  // namespace kelmora
