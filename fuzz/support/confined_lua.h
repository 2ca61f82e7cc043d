#pragma once

#include "lua/lua_vm.h"
#include "support/capture_host.h"

namespace kelmora::fuzz {

// A machine with a few thousand steps, a short native stack, and files and clocks out of reach.
class ConfinedLua {
public:
    explicit ConfinedLua(bool freshFrames = false) {
        stack_.setBudget(std::size_t{1} << 20);
        stack_.markBase();
        for (const char* name : {"io", "os", "time", "time_ms"}) machine.setGlobal(name, {});
        machine.setStepLimit(2000);
        machine.setFramesAlwaysFresh(freshFrames);
    }

private:
    NativeStack stack_;

public:
    CaptureHost host;
    vesper::lua::LuaVM machine{host, stack_};
};

}  // namespace kelmora::fuzz
