#ifndef _WIN32
#include "platform/linux/sdl_pads.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "support/environment.h"

namespace kelmora {
namespace {

template <typename Function>
Function* sdlFunction(const char* name) {
    return reinterpret_cast<Function*>(dlsym(dlopen("libSDL2-2.0.so.0", RTLD_NOW), name));
}

// What the events that are waiting leave held.
PadButtons heldAfterEvents(SdlPads& pads, PadButtons held) {
    SDL_Event event;
    while (sdl().pollEvent(&event) != 0)
        if (const auto change = pads.handle(event)) held = change->now;
    return held;
}

// A pad of SDL's own that the test holds in its hands.
TEST(SdlPads, AVirtualPadIsReadFromPlugToUnplug) {
    if (!SdlLibrary::load()) GTEST_SKIP() << "SDL is not installed";
    const ScopedEnvironment video("SDL_VIDEODRIVER", "dummy");
    const ScopedEnvironment background("SDL_JOYSTICK_ALLOW_BACKGROUND_EVENTS", "1");
    const auto attach = sdlFunction<int(SDL_JoystickType, int, int, int)>("SDL_JoystickAttachVirtual");
    const auto detach = sdlFunction<int(int)>("SDL_JoystickDetachVirtual");
    const auto fromId = sdlFunction<SDL_Joystick*(SDL_JoystickID)>("SDL_JoystickFromInstanceID");
    const auto idOfDevice = sdlFunction<SDL_JoystickID(int)>("SDL_JoystickGetDeviceInstanceID");
    const auto setButton = sdlFunction<int(SDL_Joystick*, int, Uint8)>("SDL_JoystickSetVirtualButton");
    const auto setAxis = sdlFunction<int(SDL_Joystick*, int, Sint16)>("SDL_JoystickSetVirtualAxis");
    if (!attach || !detach || !setButton) GTEST_SKIP() << "this SDL has no virtual pads";
    ASSERT_EQ(sdl().initSubSystem(SDL_INIT_VIDEO), 0);

    SdlPads pads;
    pads.start();
    const int device =
        attach(SDL_JOYSTICK_TYPE_GAMECONTROLLER, SDL_CONTROLLER_AXIS_MAX, SDL_CONTROLLER_BUTTON_MAX, 0);
    ASSERT_GE(device, 0);
    const SDL_JoystickID id = idOfDevice(device);
    EXPECT_EQ(heldAfterEvents(pads, 0), 0);
    SDL_Joystick* joystick = fromId(id);
    ASSERT_NE(joystick, nullptr) << "it was not opened";

    setButton(joystick, SDL_CONTROLLER_BUTTON_START, 1);
    setAxis(joystick, SDL_CONTROLLER_AXIS_LEFTY, 30000);
    const PadButtons held = heldAfterEvents(pads, 0);
    EXPECT_EQ(held, padBit(PadButton::start) | padBit(PadButton::down));
    setButton(joystick, SDL_CONTROLLER_BUTTON_START, 0);
    setButton(joystick, SDL_CONTROLLER_BUTTON_Y, 1);
    EXPECT_EQ(heldAfterEvents(pads, held), padBit(PadButton::y) | padBit(PadButton::down));

    detach(device);
    EXPECT_EQ(heldAfterEvents(pads, held), 0);
    sdl().quitSubSystem(SDL_INIT_VIDEO);
}

}  // namespace
}  // namespace kelmora
#endif
