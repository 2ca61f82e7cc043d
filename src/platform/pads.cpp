#include "platform/pads.h"

#include "platform/window_core.h"

namespace kelmora {
namespace {

constexpr int pressedFrom = 16384;
constexpr int heldFrom = 13000;

}  // namespace

void PadState::setButton(PadButton button, bool down) {
    const PadButtons bit = padBit(button);
    buttons_ = static_cast<PadButtons>(down ? buttons_ | bit : buttons_ & ~bit);
}

void PadState::setAxis(int value, PadButtons low, PadButtons high) {
    const auto reached = [this](int distance, PadButtons bit) {
        return distance >= ((stick_ & bit) != 0 ? heldFrom : pressedFrom) ? bit : PadButtons{0};
    };
    const PadButtons bits = static_cast<PadButtons>(reached(-value, low) | reached(value, high));
    stick_ = static_cast<PadButtons>((stick_ & ~(low | high)) | bits);
}

void tellPadChange(WindowCore& core, PadChange change) {
    for (std::size_t i = 0; i < padButtonCount; ++i) {
        const auto button = static_cast<PadButton>(i);
        const bool wasDown = (change.before & padBit(button)) != 0;
        const bool isDown = (change.now & padBit(button)) != 0;
        if (wasDown == isDown) continue;
        core.handle(isDown ? WindowEvent::keyDown(padCode(button)) : WindowEvent::keyUp(padCode(button)));
    }
}

}  // namespace kelmora
