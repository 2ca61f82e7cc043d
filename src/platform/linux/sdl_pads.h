#pragma once

#include <map>
#include <optional>

#include "platform/linux/sdl_library.h"
#include "platform/pads.h"

namespace kelmora {

// The pads that are plugged in, taken together: what any of them holds is held.
class SdlPads {
public:
    // Once SDL shows windows. Without pads, or where SDL cannot have any, nothing is ever held.
    void start();
    // What an event of the queue changed.
    std::optional<PadChange> handle(const SDL_Event& event);

private:
    struct Pad {
        SDL_GameController* controller = nullptr;
        PadState state;
    };

    void plug(int device);
    void unplug(SDL_JoystickID id);
    PadButtons held() const;

    std::map<SDL_JoystickID, Pad> pads_;
    bool started_ = false;
};

SdlPads& sdlPads();

}  // namespace kelmora
