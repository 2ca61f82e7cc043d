#pragma once

#include "bindings/runtime.h"

namespace kelmora {

// The functions by which programs of one language reach the globals of the others: in VesperLua `vesper_var`,
// `ruby_var` and `time_ms`, in VesperRwby `vesper_var` and `lua_var`.
void bindLuaScriptEngineInterop(Runtime& runtime);
void bindRubyScriptEngineInterop(Runtime& runtime);

}  // namespace kelmora
