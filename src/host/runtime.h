#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/button_list.h"
#include "script/vesper_script.h"

namespace kelmora {

struct WindowsWindow;

// Everything of one running game that native functions share: the interpreter, the base directory, the
// registered buttons, the clocks and the one window.
struct Runtime {
    explicit Runtime(HostServices& host);
    ~Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    void destroyWindow();

    VesperScript engine;
    // Directory of the executable with its last separator, forward slashes only.
    std::string path = " ";
    std::vector<buttonVec> buttons;
    std::string windowTitle;
    WindowsWindow* window = nullptr;  // owned
    std::int64_t clockOrigin;         // microseconds of the system clock
    std::int64_t frameClock;
};

std::int64_t systemMicroseconds();

// Fills the interpreter with the script modules, the environment globals and the input globals.
void registerFunctions(Runtime& runtime);

// Reads keyboard and mouse into their globals.
void publishInputGlobals(Runtime& runtime);

Variable makeVesperModule(Runtime& runtime);
Variable makeMetalModule(Runtime& runtime);
Variable makeSailfishModule();
void registerGlobalHelpers(VesperScript& engine);
void publishEnvironmentGlobals(VesperScript& engine);

}  // namespace kelmora
