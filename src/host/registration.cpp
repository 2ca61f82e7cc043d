#include "host/registration.h"

#include "bindings/guest_interop.h"
#include "bindings/modules.h"
#include "shim/shim.h"

namespace kelmora {

void registerFunctions(Runtime& runtime) {
    VesperScript& engine = runtime.engine;
    bindRubyScriptEngineInterop(runtime);
    bindLuaScriptEngineInterop(runtime);
    const auto publish = [&engine](const char* name,
                                   std::initializer_list<std::span<const BindingRow>> tables) {
        engine.pushVariable(name, makeModule(name, tables));
    };
    if (vh_has_window() != 0) publish("Metal", {metalBindings()});
    publish("Sailfish", {sailfishBindings()});
    publish("Vesper", {vesperBindings()});
    publish("Ruby", {rubyBindings()});
    publish("Lua", {luaBindings()});
    publish("Audio", {audioBindings()});
    publish("AI", {aiBindings()});
    publish("Font", {fontBindings()});
    publish("Jade", {jadeBindings()});
    publish("Plush", {imageBindings(), compositingBindings(), shaderBindings(), sceneBindings(),
                      imageProcessingBindings(), drawingBindings()});
    registerGlobalHelpers(engine);
    publishEnvironmentGlobals(engine);
    publishInputGlobals(runtime);
}

}  // namespace kelmora
