#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

#include "audio/sample_source.h"
#include "audio/volume.h"
#include "platform/audio_device.h"

// What a playing track gives its device, and the arithmetic of offsets. Tracks and buffers are stereo.
namespace vesper::mixer {

inline constexpr std::size_t bufferFrames = 2048;
inline constexpr std::size_t bufferSamples = bufferFrames * 2;
inline constexpr std::size_t ringSamples = bufferSamples * kelmora::audioSlots;

// Rounded down; the frame is cut to the track's length.
std::uint64_t frameOfOffset(std::uint64_t offsetMs, std::uint32_t sampleRate, std::uint64_t frames);
std::uint64_t offsetOfFrame(std::uint64_t frame, std::uint32_t sampleRate);
// The frame that is heard when the device has played so many since `startFrame`. `frames` is not 0.
std::uint64_t heardFrame(std::uint64_t startFrame, std::uint64_t played, std::uint64_t frames, bool looping);

class Feeder {
public:
    // `ring` holds `ringSamples` values and is lent to the device; `cursor` is the next frame to feed.
    Feeder(kelmora::AudioDevice& device, SampleSource& track, std::span<std::int16_t> ring, bool looping,
           std::atomic<std::uint64_t>& cursor, TrackVolume& volume)
        : device_(device), track_(track), ring_(ring), looping_(looping), cursor_(cursor), volume_(volume) {}

    // Fills and queues each free buffer. False when the track was fed to its end and nothing is in flight.
    bool round();

private:
    struct Filled {
        bool holdsFrames;
        bool atEnd;
    };
    Filled fill(std::span<std::int16_t> buffer);

    kelmora::AudioDevice& device_;
    SampleSource& track_;
    std::span<std::int16_t> ring_;
    bool looping_;
    std::atomic<std::uint64_t>& cursor_;
    TrackVolume& volume_;
    bool ended_ = false;
};

}  // namespace vesper::mixer
