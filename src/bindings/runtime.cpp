#include "bindings/runtime.h"

#include <chrono>

#include "ai/ai_jobs.h"
#include "audio/track.h"
#include "shim/shim.h"

namespace kelmora {

std::int64_t systemMicroseconds() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

Runtime::Runtime(HostServices& host)
    : engine(host),
      lua(host, engine.nativeStack()),
      ruby(host, engine.nativeStack()),
      clockOrigin(systemMicroseconds()),
      frameClock(clockOrigin) {
    engine.setHostData(this);
    platform_set_picture_writer(vh_save_png);
    engine.nativeStack().setLowAddress(platform_stack_low_address());
}

Runtime::~Runtime() {
    vesper::audio::clear();
    vesper::audio::resetVolumes();
    destroyWindow();
}

void Runtime::destroyWindow() {
    if (window) {
        vh_rememberPlace(window, windowPlacePath().c_str());
        vh_destroyWindow(window);
    }
    window = nullptr;
}

}  // namespace kelmora
