#pragma once

#include <memory>
#include <string>

#include "audio/volume.h"
#include "audio/vorbis_file.h"
#include "audio/wav_reader.h"
#include "base/pooled.h"

namespace vesper::audio {

// A sound held whole in memory, of which the mixer plays a copy, or a packed one that is unpacked while it
// plays. What asks for its samples, `inspect` and `save` among it, unpacks it whole. Tracks belong to whoever
// opened them, until `close`. A null track, and a pointer that is no open track, is accepted everywhere: the
// call does nothing and gives its neutral value.
struct Track : wav::DecodedFile, kelmora::Pooled<Track> {
    void* mixerHandle = nullptr;                    // null when the track cannot be played
    std::shared_ptr<const ogg::VorbisFile> packed;  // null once it was edited
    std::shared_ptr<mixer::TrackVolume> volume = std::make_shared<mixer::TrackVolume>();
};

// A window on a track's samples, borrowed until the track changes.
struct TrackAudioView {
    const std::int16_t* samples = nullptr;
    std::uint64_t sampleCount = 0;
    std::uint32_t sampleRate = 0;
    std::uint16_t channels = 0;
};

bool isOpen(const Track* track);
// 0 for no open track.
std::uint32_t sampleRateOf(const Track* track);
// False, with an empty view, for no view, no open track, and a track without samples, rate or channels.
bool inspect(const Track* track, TrackAudioView* view);
// A new open track.
Track* adoptSound(wav::DecodedFile&& sound);

// Reads a WAV or an Ogg Vorbis file as stereo. Null when there is none.
Track* openFile(const char* path);
// Why the last file did not open; empty when it did.
const std::string& openFailure();
// Sees to it that the samples of a packed track are there. False when there is no room for them.
bool unpack(const Track* track);
// Writes a WAV file.
bool save(const Track* track, const char* path);
// Offsets are milliseconds.
bool play(Track* track, unsigned long long offsetMs, bool loop);
// Stops; the offset to play on from.
long long pause(Track* track);
unsigned long long currentOffset(Track* track);
void close(Track* track);
// Volumes outlast edits. False, or 0, for no open track.
bool setVolume(Track* track, double volume);
double volumeOf(const Track* track);
bool setGroup(Track* track, mixer::Group group);
bool fade(Track* track, double to, double seconds);
// Master and groups at their full volume.
void resetVolumes();
// Stops all tracks and closes none.
void clear();
// Gives the mixer the track's samples as they are now.
void rebuildMixerHandle(Track* track);
void destroyMixerHandle(Track* track);

}  // namespace vesper::audio
