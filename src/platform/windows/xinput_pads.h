#pragma once

#include <array>

#include "platform/pads.h"
#include "platform/windows/windows_api.h"
// Needs the system's types.
#include <xinput.h>

namespace kelmora {

// The pads that are plugged in, taken together: what any of them holds is held. The library that knows them
// is loaded when they are first asked for; where there is none, nothing is ever held.
class XinputPads {
public:
    PadChange poll();

private:
    struct Pad {
        bool plugged = false;
        bool asked = false;
        DWORD lastAsked = 0;  // milliseconds since the system's start
        PadState state;
    };

    void load();
    void poll(DWORD number, Pad& pad);

    bool loaded_ = false;
    DWORD(WINAPI* getState_)(DWORD, XINPUT_STATE*) = nullptr;
    std::array<Pad, XUSER_MAX_COUNT> pads_;
    PadButtons held_ = 0;
};

XinputPads& xinputPads();

}  // namespace kelmora
