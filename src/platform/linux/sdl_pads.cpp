#include "platform/linux/sdl_pads.h"

namespace kelmora {
namespace {

std::optional<PadButton> buttonOf(Uint8 button) {
    switch (button) {
        case SDL_CONTROLLER_BUTTON_A:
            return PadButton::a;
        case SDL_CONTROLLER_BUTTON_B:
            return PadButton::b;
        case SDL_CONTROLLER_BUTTON_X:
            return PadButton::x;
        case SDL_CONTROLLER_BUTTON_Y:
            return PadButton::y;
        case SDL_CONTROLLER_BUTTON_RIGHTSHOULDER:
            return PadButton::r;
        case SDL_CONTROLLER_BUTTON_LEFTSHOULDER:
            return PadButton::l;
        case SDL_CONTROLLER_BUTTON_DPAD_UP:
            return PadButton::up;
        case SDL_CONTROLLER_BUTTON_DPAD_DOWN:
            return PadButton::down;
        case SDL_CONTROLLER_BUTTON_DPAD_LEFT:
            return PadButton::left;
        case SDL_CONTROLLER_BUTTON_DPAD_RIGHT:
            return PadButton::right;
        case SDL_CONTROLLER_BUTTON_START:
            return PadButton::start;
        case SDL_CONTROLLER_BUTTON_BACK:
            return PadButton::back;
        default:
            return std::nullopt;
    }
}

}  // namespace

// Looking for pads takes a while, so it goes on once it was begun. Those that are there already are
// reported as plugged in.
void SdlPads::start() {
    if (!started_) started_ = sdl().initSubSystem(SDL_INIT_GAMECONTROLLER) == 0;
}

void SdlPads::plug(int device) {
    SDL_GameController* controller = sdl().gameControllerOpen(device);
    if (!controller) return;
    const SDL_JoystickID id = sdl().joystickInstanceID(sdl().gameControllerGetJoystick(controller));
    if (!pads_.try_emplace(id, Pad{controller, {}}).second) sdl().gameControllerClose(controller);
}

void SdlPads::unplug(SDL_JoystickID id) {
    const auto found = pads_.find(id);
    if (found == pads_.end()) return;
    sdl().gameControllerClose(found->second.controller);
    pads_.erase(found);
}

PadButtons SdlPads::held() const {
    PadButtons all = 0;
    for (const auto& [id, pad] : pads_) all = static_cast<PadButtons>(all | pad.state.held());
    return all;
}

std::optional<PadChange> SdlPads::handle(const SDL_Event& event) {
    const PadButtons before = held();
    switch (event.type) {
        case SDL_CONTROLLERDEVICEADDED:
            plug(event.cdevice.which);
            break;
        case SDL_CONTROLLERDEVICEREMOVED:
            unplug(event.cdevice.which);
            break;
        case SDL_CONTROLLERBUTTONDOWN:
        case SDL_CONTROLLERBUTTONUP:
            if (const auto pad = pads_.find(event.cbutton.which); pad != pads_.end())
                if (const auto button = buttonOf(event.cbutton.button))
                    pad->second.state.setButton(*button, event.type == SDL_CONTROLLERBUTTONDOWN);
            break;
        case SDL_CONTROLLERAXISMOTION:
            if (const auto pad = pads_.find(event.caxis.which); pad != pads_.end()) {
                if (event.caxis.axis == SDL_CONTROLLER_AXIS_LEFTX)
                    pad->second.state.setStickX(event.caxis.value);
                if (event.caxis.axis == SDL_CONTROLLER_AXIS_LEFTY)
                    pad->second.state.setStickY(event.caxis.value);
            }
            break;
        default:
            return std::nullopt;
    }
    return PadChange{before, held()};
}

SdlPads& sdlPads() {
    static SdlPads& pads = *new SdlPads;
    return pads;
}

}  // namespace kelmora
