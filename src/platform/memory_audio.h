#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/audio_device.h"
#include "platform/audio_queue.h"

namespace kelmora {

// An output that exists in memory only. Its time is what a test takes from it: nothing plays by itself. The
// record outlives the device, so that what was played can be looked at after the end.
class MemoryAudioStream {
public:
    explicit MemoryAudioStream(std::uint32_t sampleRate) : sampleRate_(sampleRate) {}

    std::uint32_t sampleRate() const { return sampleRate_; }
    // Plays up to so many of the frames in flight and says how many there were.
    std::size_t consume(std::size_t frames);
    // What was consumed so far, interleaved.
    const std::vector<std::int16_t>& played() const { return played_; }
    std::size_t slotsInFlight() const;
    AudioQueue& queue() { return queue_; }

private:
    std::uint32_t sampleRate_;
    AudioQueue queue_;
    std::vector<std::int16_t> played_;
};

std::unique_ptr<AudioDevice> openMemoryAudio(std::uint32_t sampleRate);
// The stream opened last by this process, or null.
std::shared_ptr<MemoryAudioStream> lastMemoryAudioStream();

}  // namespace kelmora
