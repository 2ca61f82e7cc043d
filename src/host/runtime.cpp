#include "host/runtime.h"

#include <chrono>

#include "audio/audio_bindings.h"
#include "audio/track.h"
#include "font/font_bindings.h"
#include "platform/shim.h"
#include "plush/plush_bindings.h"

namespace kelmora {

std::int64_t systemMicroseconds() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

Runtime::Runtime(HostServices& host)
    : engine(host), clockOrigin(systemMicroseconds()), frameClock(clockOrigin) {
    engine.nativeStack().setLowAddress(platform_stack_low_address());
}

Runtime::~Runtime() {
    vesper::audio::clear();
    destroyWindow();
}

void Runtime::destroyWindow() {
    if (window) vh_destroyWindow(window);
    window = nullptr;
}

void registerFunctions(Runtime& runtime) {
    VesperScript& engine = runtime.engine;
    if (vh_has_window() != 0) engine.pushVariable("Metal", makeMetalModule(runtime));
    engine.pushVariable("Sailfish", makeSailfishModule());
    engine.pushVariable("Vesper", makeVesperModule(runtime));
    engine.pushVariable("Audio", makeAudioModule());
    engine.pushVariable("Font", makeFontModule());
    engine.pushVariable("Plush", makePlushModule(engine));
    registerGlobalHelpers(engine);
    publishEnvironmentGlobals(engine);
    publishInputGlobals(runtime);
}

}  // namespace kelmora
