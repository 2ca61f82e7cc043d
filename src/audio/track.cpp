#include "audio/track.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>

#include "audio/mixer.h"
#include "audio/wav_writer.h"

namespace vesper::audio {
namespace {

// Scripts hold plain pointers, also to tracks that they have closed.
std::unordered_map<const Track*, std::unique_ptr<Track>> liveTracks;

}  // namespace

bool isOpen(const Track* track) {
    return liveTracks.contains(track);
}

std::uint32_t sampleRateOf(const Track* track) {
    return isOpen(track) ? track->sampleRate : 0;
}

bool inspect(const Track* track, TrackAudioView* view) {
    if (!view) return false;
    *view = {};
    if (!isOpen(track) || track->samples.empty() || track->sampleRate == 0 || track->channels == 0)
        return false;
    *view = {track->samples.data(), track->samples.size(), track->sampleRate, track->channels};
    return true;
}

Track* adoptSound(wav::DecodedFile&& sound) {
    auto track = std::make_unique<Track>();
    static_cast<wav::DecodedFile&>(*track) = std::move(sound);
    Track* handle = track.get();
    liveTracks.emplace(handle, std::move(track));
    rebuildMixerHandle(handle);
    return handle;
}

Track* openFile(const char* path) try {
    std::vector<std::uint8_t> bytes;
    if (!wav::detail::readFileBytes(path, &bytes) || bytes.size() > std::numeric_limits<unsigned>::max())
        return nullptr;
    wav::DecodedFile sound;
    if (!wav::decode(bytes.data(), static_cast<unsigned>(bytes.size()), &sound, {2})) return nullptr;
    return adoptSound(std::move(sound));
} catch (const std::bad_alloc&) {
    return nullptr;
}

bool save(const Track* track, const char* path) {
    return isOpen(track) && wav::encodeFile(path, *track);
}

bool play(Track* track, unsigned long long offsetMs, bool loop) {
    return isOpen(track) && mixer::Play(track->mixerHandle, offsetMs, loop);
}

long long pause(Track* track) {
    return isOpen(track) ? static_cast<long long>(mixer::Stop(track->mixerHandle)) : 0;
}

unsigned long long currentOffset(Track* track) {
    return isOpen(track) ? mixer::GetCurrentOffset(track->mixerHandle) : 0;
}

bool setVolume(Track* track, double volume) {
    if (!isOpen(track)) return false;
    track->volume->set(volume);
    return true;
}

double volumeOf(const Track* track) {
    return isOpen(track) ? track->volume->volume() : 0.0;
}

bool setGroup(Track* track, mixer::Group group) {
    if (!isOpen(track)) return false;
    track->volume->setGroup(group);
    return true;
}

bool fade(Track* track, double to, double seconds) {
    constexpr double longest = 1e9;
    if (!isOpen(track)) return false;
    const double held = seconds > 0 ? std::min(seconds, longest) : 0.0;
    track->volume->fade(to, static_cast<std::uint64_t>(held * track->sampleRate));
    return true;
}

void resetVolumes() {
    mixer::setMasterVolume(1);
    mixer::setGroupVolume(mixer::Group::music, 1);
    mixer::setGroupVolume(mixer::Group::sound, 1);
}

void close(Track* track) {
    if (!isOpen(track)) return;
    destroyMixerHandle(track);
    liveTracks.erase(track);
}

void clear() {
    mixer::StopAll();
}

void rebuildMixerHandle(Track* track) {
    if (!isOpen(track)) return;
    destroyMixerHandle(track);
    track->mixerHandle =
        mixer::OpenPCMTrack(track->samples.data(), track->samples.size(), track->sampleRate, track->channels);
    mixer::UseVolume(track->mixerHandle, track->volume);
}

void destroyMixerHandle(Track* track) {
    if (!isOpen(track)) return;
    mixer::Close(track->mixerHandle);
    track->mixerHandle = nullptr;
}

}  // namespace vesper::audio
