#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>

#include "platform/audio_device.h"

namespace kelmora {

// The blocks in flight of an output that asks for frames when it wants them. Any thread may call.
class AudioQueue {
public:
    void push(std::size_t slot, std::span<const std::int16_t> samples);
    bool holds(std::size_t slot) const;
    void wait(std::chrono::milliseconds limit);
    void wake();
    void clear();
    // Samples handed out so far.
    std::uint64_t taken() const;
    // Moves as many samples as there are into `out` and says how many.
    std::size_t take(std::span<std::int16_t> out);

private:
    bool holdsUnlocked(std::size_t slot) const { return !blocks_[slot].empty(); }

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool signalled_ = false;
    std::array<std::span<const std::int16_t>, audioSlots> blocks_;  // what is left of each
    std::array<std::size_t, audioSlots> order_{};                   // slots, the first to play in front
    std::size_t count_ = 0;
    std::uint64_t taken_ = 0;
};

}  // namespace kelmora
