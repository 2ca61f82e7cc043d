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

// A pad's buttons are keys with codes of their own; the left stick counts as the cross.
enum class PadButton : std::uint8_t { a, b, x, y, r, l, up, down, left, right, start, back };
inline constexpr std::size_t padButtonCount = 12;
inline constexpr int firstPadCode = 0xc3;
constexpr std::uint8_t padCode(PadButton button) {
    return static_cast<std::uint8_t>(firstPadCode + static_cast<int>(button));
}

inline constexpr int keyBack = 8;
inline constexpr int keyTab = 9;
inline constexpr int keyReturn = 13;
inline constexpr int keyAlt = 18;
inline constexpr int keyEscape = 27;
inline constexpr int keyEnd = 35;
inline constexpr int keyHome = 36;
inline constexpr int keyArrowLeft = 37;
inline constexpr int keyArrowUp = 38;
inline constexpr int keyArrowRight = 39;
inline constexpr int keyArrowDown = 40;
inline constexpr int keyDelete = 46;
inline constexpr int keyF11 = 122;
inline constexpr int keyF12 = 123;

// Keys that scripts can read beside those of `keyTable`, whose record is settled.
inline constexpr KeySlot moreKeyTable[] = {
    {"ESCAPE", 27, 0},
    {"TAB", 9, 0},
    {"SHIFT", 16, 0},
    {"CONTROL", 17, 0},
    {"ALT", keyAlt, 0},
    {"F1", 112, 0},
    {"F2", 113, 0},
    {"F3", 114, 0},
    {"F4", 115, 0},
    {"F5", 116, 0},
    {"F6", 117, 0},
    {"F7", 118, 0},
    {"F8", 119, 0},
    {"F9", 120, 0},
    {"F10", 121, 0},
    {"F11", keyF11, 0},
    {"F12", 123, 0},
    {"PAGE_UP", 33, 0},
    {"PAGE_DOWN", 34, 0},
    {"END", 35, 0},
    {"HOME", 36, 0},
    {"INSERT", 45, 0},
    {"PAD_A", padCode(PadButton::a), 0},
    {"PAD_B", padCode(PadButton::b), 0},
    {"PAD_X", padCode(PadButton::x), 0},
    {"PAD_Y", padCode(PadButton::y), 0},
    {"PAD_R", padCode(PadButton::r), 0},
    {"PAD_L", padCode(PadButton::l), 0},
    {"PAD_UP", padCode(PadButton::up), 0},
    {"PAD_DOWN", padCode(PadButton::down), 0},
    {"PAD_LEFT", padCode(PadButton::left), 0},
    {"PAD_RIGHT", padCode(PadButton::right), 0},
    {"PAD_START", padCode(PadButton::start), 0},
    {"PAD_BACK", padCode(PadButton::back), 0},
};

}  // namespace kelmora
