#pragma once

#define SDL_MAIN_HANDLED
#include <SDL.h>

namespace kelmora {

// SDL's functions. It is loaded when a window or a sound is first wanted: the libraries that it brings take
// longer to load than all else that happens before a script's first line.
class SdlLibrary {
public:
    // Null where SDL is not installed.
    static const SdlLibrary* load();

private:
    struct Symbol {
        void* address;
        template <typename Function>
        operator Function*() const {
            return reinterpret_cast<Function*>(address);
        }
    };

    explicit SdlLibrary(void* handle) : handle_(handle) {}
    Symbol function(const char* name);

    void* handle_;
    bool isComplete_ = true;

public:
    decltype(&SDL_UpperBlit) blitSurface = function("SDL_UpperBlit");
    decltype(&SDL_CaptureMouse) captureMouse = function("SDL_CaptureMouse");
    decltype(&SDL_CloseAudioDevice) closeAudioDevice = function("SDL_CloseAudioDevice");
    decltype(&SDL_CreateRGBSurfaceWithFormatFrom) createRGBSurfaceWithFormatFrom =
        function("SDL_CreateRGBSurfaceWithFormatFrom");
    decltype(&SDL_CreateWindow) createWindow = function("SDL_CreateWindow");
    decltype(&SDL_DestroyWindow) destroyWindow = function("SDL_DestroyWindow");
    decltype(&SDL_FreeSurface) freeSurface = function("SDL_FreeSurface");
    decltype(&SDL_GameControllerClose) gameControllerClose = function("SDL_GameControllerClose");
    decltype(&SDL_GameControllerGetJoystick) gameControllerGetJoystick =
        function("SDL_GameControllerGetJoystick");
    decltype(&SDL_GameControllerOpen) gameControllerOpen = function("SDL_GameControllerOpen");
    decltype(&SDL_GetCurrentVideoDriver) getCurrentVideoDriver = function("SDL_GetCurrentVideoDriver");
    decltype(&SDL_GetDisplayBounds) getDisplayBounds = function("SDL_GetDisplayBounds");
    decltype(&SDL_GetNumAudioDevices) getNumAudioDevices = function("SDL_GetNumAudioDevices");
    decltype(&SDL_GetNumVideoDisplays) getNumVideoDisplays = function("SDL_GetNumVideoDisplays");
    decltype(&SDL_GetWindowFlags) getWindowFlags = function("SDL_GetWindowFlags");
    decltype(&SDL_GetWindowFromID) getWindowFromID = function("SDL_GetWindowFromID");
    decltype(&SDL_GetWindowPosition) getWindowPosition = function("SDL_GetWindowPosition");
    decltype(&SDL_GetWindowSize) getWindowSize = function("SDL_GetWindowSize");
    decltype(&SDL_GetWindowSurface) getWindowSurface = function("SDL_GetWindowSurface");
    decltype(&SDL_HideWindow) hideWindow = function("SDL_HideWindow");
    decltype(&SDL_InitSubSystem) initSubSystem = function("SDL_InitSubSystem");
    decltype(&SDL_JoystickInstanceID) joystickInstanceID = function("SDL_JoystickInstanceID");
    decltype(&SDL_OpenAudioDevice) openAudioDevice = function("SDL_OpenAudioDevice");
    decltype(&SDL_PauseAudioDevice) pauseAudioDevice = function("SDL_PauseAudioDevice");
    decltype(&SDL_PollEvent) pollEvent = function("SDL_PollEvent");
    decltype(&SDL_PumpEvents) pumpEvents = function("SDL_PumpEvents");
    decltype(&SDL_QuitSubSystem) quitSubSystem = function("SDL_QuitSubSystem");
    decltype(&SDL_RaiseWindow) raiseWindow = function("SDL_RaiseWindow");
    decltype(&SDL_SetClipboardText) setClipboardText = function("SDL_SetClipboardText");
    decltype(&SDL_SetHint) setHint = function("SDL_SetHint");
    decltype(&SDL_SetMainReady) setMainReady = function("SDL_SetMainReady");
    decltype(&SDL_SetWindowFullscreen) setWindowFullscreen = function("SDL_SetWindowFullscreen");
    decltype(&SDL_SetWindowPosition) setWindowPosition = function("SDL_SetWindowPosition");
    decltype(&SDL_SetWindowSize) setWindowSize = function("SDL_SetWindowSize");
    decltype(&SDL_SetWindowTitle) setWindowTitle = function("SDL_SetWindowTitle");
    decltype(&SDL_StartTextInput) startTextInput = function("SDL_StartTextInput");
    decltype(&SDL_StopTextInput) stopTextInput = function("SDL_StopTextInput");
    decltype(&SDL_UnionRect) unionRect = function("SDL_UnionRect");
    decltype(&SDL_UpdateWindowSurface) updateWindowSurface = function("SDL_UpdateWindowSurface");
    decltype(&SDL_WasInit) wasInit = function("SDL_WasInit");
};

// For code that runs only once SDL is loaded.
const SdlLibrary& sdl();

}  // namespace kelmora
