#pragma once

#include <cstdint>

#include "platform/key_table.h"

namespace kelmora {

class WindowCore;

// Which buttons are held, a bit for each PadButton.
using PadButtons = std::uint16_t;

constexpr PadButtons padBit(PadButton button) {
    return static_cast<PadButtons>(1u << static_cast<unsigned>(button));
}

struct PadChange {
    PadButtons before = 0;
    PadButtons now = 0;
};

// One pad: its buttons, and its left stick as a second cross.
class PadState {
public:
    void setButtons(PadButtons buttons) { buttons_ = buttons; }
    void setButton(PadButton button, bool down);
    // From -32768, left or up, to 32767. Half way is a press, which ends a little nearer to the middle.
    void setStickX(int x) { setAxis(x, padBit(PadButton::left), padBit(PadButton::right)); }
    void setStickY(int y) { setAxis(y, padBit(PadButton::up), padBit(PadButton::down)); }

    PadButtons held() const { return static_cast<PadButtons>(buttons_ | stick_); }

private:
    void setAxis(int value, PadButtons low, PadButtons high);

    PadButtons buttons_ = 0;
    PadButtons stick_ = 0;
};

// Presses and releases the keys of what changed.
void tellPadChange(WindowCore& core, PadChange change);

}  // namespace kelmora
