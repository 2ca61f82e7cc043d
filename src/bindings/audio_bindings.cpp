#include <cstdint>
#include <limits>

#include "audio/track.h"
#include "bindings/modules.h"
#include "script/binding.h"
#include "script/vesper_script.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

using vesper::audio::Track;

Track* trackHandle(const BindingCall& call) {
    return static_cast<Track*>(call.pointer(0, "track"));
}

// Milliseconds; anything that is not above 0 is 0.
unsigned long long offsetArgument(const BindingCall& call, std::size_t index) {
    if (index >= call.count()) return 0;
    const double value = call.number(index, "offset");
    constexpr double limit = 18446744073709551616.0;
    if (!(value > 0.0)) return 0;
    return value < limit ? static_cast<unsigned long long>(value)
                         : std::numeric_limits<unsigned long long>::max();
}

Variable OpenAudio(const BindingCall& call) {
    const std::string path = call.path(0);
    Track* track = vh_has_mixer() != 0 ? vesper::audio::openFile(path.c_str()) : nullptr;
    return returnValues({track ? Variable::pointer(track) : Variable(), Variable::boolean(track != nullptr)});
}

Variable PlayAudio(const BindingCall& call) {
    call.require(2);
    Track* track = trackHandle(call);
    const bool loop = call.condition(1);
    return Variable::boolean(vesper::audio::play(track, offsetArgument(call, 2), loop));
}

Variable PauseAudio(const BindingCall& call) {
    const long long offset = vesper::audio::pause(trackHandle(call));
    if (offset > std::numeric_limits<std::int32_t>::max())
        return Variable::number(static_cast<float>(offset));
    return Variable::integer(static_cast<std::int32_t>(offset));
}

Variable FreeAudio(const BindingCall& call) {
    vesper::audio::close(trackHandle(call));
    return {};
}

Variable ClearAudio(const BindingCall&) {
    vesper::audio::clear();
    return {};
}

Variable SaveAudio(const BindingCall& call) {
    call.require(2);
    const Track* track = trackHandle(call);
    const std::string path = call.path(1);
    return Variable::boolean(vesper::audio::save(track, path.c_str()));
}

constexpr BindingRow rows[] = {
    {"open", OpenAudio}, {"play", PlayAudio},   {"pause", PauseAudio},
    {"free", FreeAudio}, {"clear", ClearAudio}, {"save", SaveAudio},
};

}  // namespace

std::span<const BindingRow> audioBindings() {
    return rows;
}

}  // namespace kelmora
