#include "audio/track_edit.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <optional>
#include <utility>

#include "audio/resample.h"
#include "audio/sample_math.h"
#include "audio/tone.h"

namespace vesper::audio {
namespace {

std::uint64_t frameCount(const Track& track) {
    return track.samples.size() / track.channels;
}

void replaceSamples(Track& track, wav::DecodedFile&& sound) {
    track.samples = std::move(sound.samples);
    rebuildMixerHandle(&track);
}

// What plays at another pace needs frames and a sensible factor; of the rest some calls have nothing to do.
enum class Change { Refused, None, Wanted };

Change changeOfPace(const Track* track, double factor) {
    if (!unpack(track) || !std::isfinite(factor) || factor <= 0) return Change::Refused;
    const bool idle = factor == 1.0 || track->channels == 0 || track->samples.size() < track->channels;
    return idle ? Change::None : Change::Wanted;
}

bool resampleTrack(Track& track, double frames, double factor) try {
    if (!(frames * track.channels <= static_cast<double>(largestTrackSamples))) return false;
    replaceSamples(track, resample(track, static_cast<std::uint32_t>(frames), factor));
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool isStereo(const Track& track) {
    return track.channels == 2 && track.sampleRate != 0;
}

}  // namespace

Track* form(int frequency, int lengthMs, const char* shape, const char* side) try {
    if (frequency < 0 || lengthMs < 0 || !shape || !side) return nullptr;
    const auto knownShape = toneShape(shape);
    const auto knownSide = toneSide(side);
    if (!knownShape || !knownSide) return nullptr;
    const std::uint32_t frames = framesOfMilliseconds(lengthMs, toneRate);
    if (std::uint64_t{frames} * 2 > largestTrackSamples) return nullptr;
    return adoptSound(makeTone(static_cast<std::uint32_t>(frequency), frames, *knownShape, *knownSide));
} catch (const std::bad_alloc&) {
    return nullptr;
}

bool add(Track* target, const Track* source, long long offsetMs) try {
    if (!unpack(target) || !unpack(source) || offsetMs < 0) return false;
    if (!isStereo(*target) || !isStereo(*source)) return false;
    if (target->samples.size() < 2 || source->samples.size() < 2) return true;
    const std::uint32_t offset = framesOfMilliseconds(static_cast<double>(offsetMs), target->sampleRate);
    if (offset == farthestFrame || offset >= frameCount(*target)) return true;
    if (target == source)
        mixInto(*target, wav::DecodedFile(*source), offset);
    else
        mixInto(*target, *source, offset);
    rebuildMixerHandle(target);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool trim(Track* track, long long startMs, long long endMs) try {
    if (!unpack(track) || startMs < 0 || endMs < startMs || track->channels == 0 || track->sampleRate == 0)
        return false;
    const auto frameAt = [track](long long offsetMs) {
        return std::min<std::uint64_t>(framesOfMilliseconds(static_cast<double>(offsetMs), track->sampleRate),
                                       frameCount(*track));
    };
    const auto first =
        track->samples.begin() + static_cast<std::ptrdiff_t>(frameAt(startMs) * track->channels);
    const auto last = track->samples.begin() + static_cast<std::ptrdiff_t>(frameAt(endMs) * track->channels);
    wav::DecodedFile kept;
    kept.samples.assign(first, last);
    replaceSamples(*track, std::move(kept));
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool pitch(Track* track, double factor) {
    const Change change = changeOfPace(track, factor);
    if (change != Change::Wanted) return change == Change::None;
    return resampleTrack(*track, static_cast<double>(frameCount(*track)), factor);
}

bool speed(Track* track, double factor) {
    const Change change = changeOfPace(track, factor);
    if (change != Change::Wanted) return change == Change::None;
    // Rounds halves away from zero; an endless result is refused.
    return resampleTrack(*track, std::round(static_cast<double>(frameCount(*track)) / factor), factor);
}

}  // namespace vesper::audio
