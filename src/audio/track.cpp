#include "audio/track.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "audio/mixer.h"
#include "audio/sample_math.h"
#include "audio/tone.h"
#include "audio/wav_writer.h"

namespace vesper::audio {
namespace {

// Scripts hold plain pointers, also to tracks that they have closed.
std::unordered_map<const Track*, std::unique_ptr<Track>> liveTracks;

std::string lastFailure;

Track* adopt(std::unique_ptr<Track> track) {
    Track* handle = track.get();
    liveTracks.emplace(handle, std::move(track));
    return handle;
}

Track* openPacked(std::vector<std::uint8_t> bytes) {
    auto file = ogg::readVorbis(std::move(bytes), lastFailure);
    if (!file) return nullptr;
    auto track = std::make_unique<Track>();
    track->sampleRate = file->sampleRate;
    track->channels = 2;
    track->mixerHandle = mixer::OpenSource(ogg::openVorbis(file), file->sampleRate);
    track->packed = std::move(file);
    mixer::UseVolume(track->mixerHandle, track->volume);
    lastFailure.clear();
    return adopt(std::move(track));
}

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
    if (!unpack(track) || track->samples.empty() || track->sampleRate == 0 || track->channels == 0)
        return false;
    *view = {track->samples.data(), track->samples.size(), track->sampleRate, track->channels};
    return true;
}

Track* adoptSound(wav::DecodedFile&& sound) {
    auto track = std::make_unique<Track>();
    static_cast<wav::DecodedFile&>(*track) = std::move(sound);
    Track* handle = adopt(std::move(track));
    rebuildMixerHandle(handle);
    return handle;
}

Track* openFile(const char* path) try {
    std::vector<std::uint8_t> bytes;
    lastFailure = "the file is missing or empty";
    if (!wav::detail::readFileBytes(path, &bytes) || bytes.size() > std::numeric_limits<unsigned>::max())
        return nullptr;
    constexpr std::string_view oggMark = "OggS";
    if (bytes.size() >= oggMark.size() && std::equal(oggMark.begin(), oggMark.end(), bytes.begin()))
        return openPacked(std::move(bytes));
    lastFailure = "it is neither a WAV nor an Ogg Vorbis file that can be played";
    wav::DecodedFile sound;
    if (!wav::decode(bytes.data(), static_cast<unsigned>(bytes.size()), &sound, {2})) return nullptr;
    Track* track = adoptSound(std::move(sound));
    lastFailure.clear();
    return track;
} catch (const std::bad_alloc&) {
    lastFailure = "there is no memory for it";
    return nullptr;
}

const std::string& openFailure() {
    return lastFailure;
}

bool unpack(const Track* track) try {
    const auto found = liveTracks.find(track);
    if (found == liveTracks.end()) return false;
    Track& owned = *found->second;
    if (!owned.packed || !owned.samples.empty()) return true;
    const auto source = ogg::openVorbis(owned.packed);
    if (!source || source->frames() * 2 > largestTrackSamples) return false;
    std::vector<std::int16_t> samples(static_cast<std::size_t>(source->frames() * 2));
    source->read(0, samples);
    owned.samples = std::move(samples);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool save(const Track* track, const char* path) {
    return isOpen(track) && unpack(track) && wav::encodeFile(path, *track);
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
    track->packed.reset();
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
