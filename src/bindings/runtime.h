#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bindings/button_list.h"
#include "lua/lua_vm.h"
#include "platform/letterbox.h"
#include "plush/scene/scene.h"
#include "rwby/ruby_vm.h"
#include "script/binding.h"
#include "script/vesper_script.h"

namespace kelmora {

class AIJobs;
struct WindowsWindow;

// Everything of one running game that native functions share: the interpreter, the base directory, the
// registered buttons, the scene, the clocks and the one window.
struct Runtime {
    explicit Runtime(HostServices& host);
    ~Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    // Where the game keeps saves, settings and the window's place, with its last separator.
    std::string keptFolder() const { return keptElsewhere.empty() ? usualKeptFolder() : keptElsewhere; }
    std::string usualKeptFolder() const { return path + "../Resources/volatile/"; }
    std::string windowPlacePath() const { return keptFolder() + "window.txt"; }
    void destroyWindow();

    VesperScript engine;
    // The guests share the engine's host and its budget of native stack.
    vesper::lua::LuaVM lua;
    vesper::ruby::RubyVM ruby;
    // Directory of the executable with its last separator, forward slashes only.
    std::string path = " ";
    std::string keptElsewhere;  // for a game in a place that cannot be written to
    std::vector<buttonVec> buttons;
    Scene scene;
    std::string windowTitle;
    WindowsWindow* window = nullptr;  // owned
    Scaling scaling = Scaling::nearest;
    std::int64_t clockOrigin;  // microseconds of the system clock
    std::int64_t frameClock;
    std::unique_ptr<AIJobs> aiJobs;  // made by the first job; goes first and waits for what it works on
};

// The runtime whose script makes the call.
inline Runtime& runtimeOf(const BindingCall& call) {
    return *static_cast<Runtime*>(call.engine().hostData());
}

std::int64_t systemMicroseconds();

// Reads keyboard and mouse into their globals.
void publishInputGlobals(Runtime& runtime);

}  // namespace kelmora
