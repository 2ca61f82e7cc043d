#include "platform/windows/xinput_pads.h"

#include <bit>
#include <utility>

namespace kelmora {
namespace {

// Asking for a pad that is not there takes long.
constexpr DWORD askAgainMs = 2000;

constexpr std::pair<WORD, PadButton> buttonTable[] = {
    {XINPUT_GAMEPAD_A, PadButton::a},
    {XINPUT_GAMEPAD_B, PadButton::b},
    {XINPUT_GAMEPAD_X, PadButton::x},
    {XINPUT_GAMEPAD_Y, PadButton::y},
    {XINPUT_GAMEPAD_RIGHT_SHOULDER, PadButton::r},
    {XINPUT_GAMEPAD_LEFT_SHOULDER, PadButton::l},
    {XINPUT_GAMEPAD_DPAD_UP, PadButton::up},
    {XINPUT_GAMEPAD_DPAD_DOWN, PadButton::down},
    {XINPUT_GAMEPAD_DPAD_LEFT, PadButton::left},
    {XINPUT_GAMEPAD_DPAD_RIGHT, PadButton::right},
    {XINPUT_GAMEPAD_START, PadButton::start},
    {XINPUT_GAMEPAD_BACK, PadButton::back},
};

PadButtons buttonsOf(WORD pressed) {
    PadButtons buttons = 0;
    for (const auto& [mask, button] : buttonTable)
        if ((pressed & mask) != 0) buttons = static_cast<PadButtons>(buttons | padBit(button));
    return buttons;
}

}  // namespace

void XinputPads::load() {
    loaded_ = true;
    for (const char* name : {"xinput1_4.dll", "xinput1_3.dll", "xinput9_1_0.dll"}) {
        const HMODULE library = LoadLibraryA(name);
        if (!library) continue;
        getState_ = std::bit_cast<decltype(getState_)>(GetProcAddress(library, "XInputGetState"));
        if (getState_) return;
    }
}

void XinputPads::poll(DWORD number, Pad& pad) {
    const DWORD now = GetTickCount();
    if (!pad.plugged && pad.asked && now - pad.lastAsked < askAgainMs) return;
    XINPUT_STATE state{};
    pad.plugged = getState_(number, &state) == ERROR_SUCCESS;
    pad.asked = true;
    pad.lastAsked = now;
    if (!pad.plugged) {
        pad.state = {};
        return;
    }
    pad.state.setButtons(buttonsOf(state.Gamepad.wButtons));
    pad.state.setStickX(state.Gamepad.sThumbLX);
    pad.state.setStickY(-state.Gamepad.sThumbLY);  // it counts upwards
}

PadChange XinputPads::poll() {
    if (!loaded_) load();
    if (!getState_) return {};
    PadButtons now = 0;
    for (DWORD number = 0; number < pads_.size(); ++number) {
        poll(number, pads_[number]);
        now = static_cast<PadButtons>(now | pads_[number].state.held());
    }
    return {std::exchange(held_, now), now};
}

XinputPads& xinputPads() {
    static XinputPads pads;
    return pads;
}

}  // namespace kelmora
