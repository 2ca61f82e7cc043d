#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace kelmora {

// Blocks that a device holds at most, each in a slot of its own.
inline constexpr std::size_t audioSlots = 4;

// One output stream of 16-bit stereo frames. A new kind of output fills in this form; which frames it gets is
// the feeder's business. All members may be called from any thread; the destructor ends the output.
class AudioDevice {
public:
    AudioDevice() = default;
    AudioDevice(const AudioDevice&) = delete;
    AudioDevice& operator=(const AudioDevice&) = delete;
    virtual ~AudioDevice() = default;

    // Queues a block behind those in flight. The samples are lent until the slot is free again, the device is
    // reset or it ends. False when the device takes no more.
    virtual bool write(std::size_t slot, std::span<const std::int16_t> samples) = 0;
    virtual bool queued(std::size_t slot) const = 0;
    // Returns when a block was played to its end, after `wake`, or when the time is over.
    virtual void wait(std::chrono::milliseconds limit) = 0;
    virtual void wake() = 0;
    // Frames played since the device was opened.
    virtual std::uint64_t position() const = 0;
    // Drops what is queued.
    virtual void reset() = 0;
};

// A stream of its own; the system adds the streams. Null when that fails. KELMORA_AUDIO chooses the output
// ("memory" or the system's, "sdl" or "waveout"); an unknown name raises std::runtime_error.
std::unique_ptr<AudioDevice> openAudioDevice(std::uint32_t sampleRate);

// The output of the system this is built for, and what KELMORA_AUDIO calls it.
std::unique_ptr<AudioDevice> openSystemAudio(std::uint32_t sampleRate);
const char* systemAudioName();

}  // namespace kelmora
