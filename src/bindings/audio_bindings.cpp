#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "audio/frequency_analysis.h"
#include "audio/sample_math.h"
#include "audio/tone.h"
#include "audio/track_edit.h"
#include "bindings/modules.h"
#include "script/binding.h"
#include "script/vesper_script.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

using vesper::audio::Track;
using vesper::audio::TrackAudioView;

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

Variable AudioOpenFailure(const BindingCall&) {
    const std::string& failure = vesper::audio::openFailure();
    return failure.empty() ? Variable() : Variable::text(failure);
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

vesper::mixer::Group groupArgument(const BindingCall& call, std::size_t index) {
    const std::string& name = call.text(index, "group");
    if (name != "music" && name != "sound") call.fail("group must be music or sound");
    return name == "music" ? vesper::mixer::Group::music : vesper::mixer::Group::sound;
}

Variable SetAudioVolume(const BindingCall& call) {
    call.require(2);
    Track* track = trackHandle(call);
    return Variable::boolean(vesper::audio::setVolume(track, call.number(1, "volume")));
}

Variable GetAudioVolume(const BindingCall& call) {
    return Variable::number(static_cast<float>(vesper::audio::volumeOf(trackHandle(call))));
}

Variable SetAudioGroup(const BindingCall& call) {
    call.require(2);
    Track* track = trackHandle(call);
    return Variable::boolean(vesper::audio::setGroup(track, groupArgument(call, 1)));
}

Variable FadeAudio(const BindingCall& call) {
    call.require(3);
    Track* track = trackHandle(call);
    const double volume = call.number(1, "volume");
    return Variable::boolean(vesper::audio::fade(track, volume, call.number(2, "seconds")));
}

Variable SetMasterVolume(const BindingCall& call) {
    vesper::mixer::setMasterVolume(call.number(0, "volume"));
    return {};
}

Variable SetGroupVolume(const BindingCall& call) {
    call.require(2);
    const vesper::mixer::Group group = groupArgument(call, 0);
    vesper::mixer::setGroupVolume(group, call.number(1, "volume"));
    return {};
}

Variable SaveAudio(const BindingCall& call) {
    call.require(2);
    const Track* track = trackHandle(call);
    const std::string path = call.path(1);
    return Variable::boolean(vesper::audio::save(track, path.c_str()));
}

Variable FormAudio(const BindingCall& call) {
    call.require(4);
    const std::int32_t frequency = call.integer(0, "frequency");
    const std::int32_t length = call.integer(1, "lengthMS");
    const std::string& shape = call.text(2, "shape");
    const std::string& side = call.text(3, "side");
    if (frequency < 0) call.fail("frequency must be 0 or greater");
    if (length < 0) call.fail("lengthMS must be 0 or greater");
    if (!vesper::audio::toneShape(shape)) call.fail("shape must be square, sine, or saw");
    if (!vesper::audio::toneSide(side)) call.fail("side must be left, right, or both");
    Track* track = vesper::audio::form(frequency, length, shape.c_str(), side.c_str());
    return track ? Variable::pointer(track) : Variable();
}

Variable AddAudio(const BindingCall& call) {
    call.require(3);
    auto* target = static_cast<Track*>(call.pointer(0, "targetTrack"));
    const auto* source = static_cast<Track*>(call.pointer(1, "sourceTrack"));
    const std::int32_t offset = call.integer(2, "offsetMS");
    if (offset < 0) call.fail("offsetMS must be 0 or greater");
    return Variable::boolean(vesper::audio::add(target, source, offset));
}

Variable TrimAudio(const BindingCall& call) {
    call.require(3);
    Track* track = trackHandle(call);
    const std::int32_t start = call.integer(1, "startOffsetMS");
    const std::int32_t end = call.integer(2, "endOffsetMS");
    if (start < 0 || end < 0) call.fail("offsets must be 0 or greater");
    if (end < start) call.fail("endOffsetMS must be greater than or equal to startOffsetMS");
    return Variable::boolean(vesper::audio::trim(track, start, end));
}

Variable changePace(const BindingCall& call, bool (*change)(Track*, double)) {
    call.require(2);
    Track* track = trackHandle(call);
    const double factor = call.number(1, "factor");
    if (!(factor > 0)) call.fail("factor must be greater than 0");
    return Variable::boolean(change(track, factor));
}

Variable PitchAudio(const BindingCall& call) {
    return changePace(call, vesper::audio::pitch);
}

Variable SpeedAudio(const BindingCall& call) {
    return changePace(call, vesper::audio::speed);
}

// Milliseconds, rounded; a whole number as long as it fits one.
Variable audioOffsetVariable(std::uint64_t frame, std::uint32_t sampleRate) {
    if (sampleRate == 0) return Variable::integer(0);
    const double exact = static_cast<double>(frame) * 1000.0 / sampleRate + 0.5;
    const auto milliseconds = static_cast<std::uint64_t>(exact);
    if (milliseconds < 0x80000000u) return Variable::integer(static_cast<std::int32_t>(milliseconds));
    return Variable::number(static_cast<float>(milliseconds));
}

struct FrequencySearch {
    double frequency;
    double tolerance;
    double minimumDuration;  // milliseconds
    double threshold;
};

FrequencySearch searchArguments(const BindingCall& call) {
    return {call.number(1, "frequency"), call.number(2, "toleranceHZ"), call.number(3, "minimumDurationMS"),
            call.number(4, "threshold")};
}

// The duration in frames. A track without a rate has none.
std::uint64_t checkedMinimum(const BindingCall& call, const FrequencySearch& search, std::uint32_t rate) {
    constexpr double limit = 18446744073709551616.0;
    if (!(search.frequency > 0) || std::isinf(search.frequency))
        call.fail("frequency must be greater than 0");
    if (rate != 0 && search.frequency >= rate / 2.0)
        call.fail("frequency must be below the track Nyquist frequency");
    if (!(search.tolerance >= 0)) call.fail("toleranceHZ must be 0 or greater");
    if (!(search.minimumDuration >= 0)) call.fail("minimumDurationMS must be 0 or greater");
    const double frames = std::ceil(search.minimumDuration * rate / 1000.0);
    if (!(frames < limit)) call.fail("minimumDurationMS is too large");
    if (!(search.threshold > 0 && search.threshold <= 2))
        call.fail("threshold must be greater than 0 and no more than 2");
    return static_cast<std::uint64_t>(frames);
}

// The frame at an offset that may be missing or `not`, held to the track.
std::uint64_t frameArgument(const BindingCall& call, std::size_t index, const char* name,
                            const TrackAudioView& view, std::uint64_t missing) {
    const std::uint64_t frames = vesper::audio::audioFrameCount(view);
    if (index >= call.count() || call.at(index).isNot()) return std::min(missing, frames);
    const double offset = call.number(index, name);
    if (!(offset > 0)) return 0;
    return std::min<std::uint64_t>(vesper::audio::framesOfMilliseconds(offset, view.sampleRate), frames);
}

Variable FindAudioFrequency(const BindingCall& call) {
    call.require(5);
    const Track* track = trackHandle(call);
    const FrequencySearch search = searchArguments(call);
    TrackAudioView view;
    vesper::audio::inspect(track, &view);
    const std::uint64_t start = frameArgument(call, 5, "startMS", view, 0);
    const std::uint64_t end =
        frameArgument(call, 6, "endMS", view, std::numeric_limits<std::uint64_t>::max());
    const std::uint64_t minimum = checkedMinimum(call, search, vesper::audio::sampleRateOf(track));
    Variable list = Variable::makeArray();
    if (start >= end) return list;
    TrackAudioView part = view;
    part.samples += static_cast<std::size_t>(start) * view.channels;
    part.sampleCount = (end - start) * view.channels;
    for (const auto& match : vesper::audio::findFrequencyMatches(part, search.frequency, search.tolerance,
                                                                 minimum, search.threshold))
        list.items().push_back(Variable::array({audioOffsetVariable(start + match.start, view.sampleRate),
                                                audioOffsetVariable(start + match.end, view.sampleRate)}));
    return list;
}

constexpr BindingRow rows[] = {
    {"open", OpenAudio},
    {"play", PlayAudio},
    {"pause", PauseAudio},
    {"free", FreeAudio},
    {"clear", ClearAudio},
    {"save", SaveAudio},
    {"form", FormAudio},
    {"add", AddAudio},
    {"trim", TrimAudio},
    {"pitch", PitchAudio},
    {"speed", SpeedAudio},
    {"findFrequency", FindAudioFrequency},
    {"openFailure", AudioOpenFailure},
    {"setVolume", SetAudioVolume},
    {"getVolume", GetAudioVolume},
    {"setGroup", SetAudioGroup},
    {"fade", FadeAudio},
    {"setMasterVolume", SetMasterVolume},
    {"setGroupVolume", SetGroupVolume},
};

}  // namespace

std::span<const BindingRow> audioBindings() {
    return rows;
}

}  // namespace kelmora
