#include "audio/feeder.h"

#include <algorithm>
#include <limits>

namespace vesper::mixer {

std::uint64_t frameOfOffset(std::uint64_t offsetMs, std::uint32_t sampleRate, std::uint64_t frames) {
    if (offsetMs > std::numeric_limits<std::uint64_t>::max() / sampleRate) return frames;
    return std::min(offsetMs * sampleRate / 1000, frames);
}

std::uint64_t offsetOfFrame(std::uint64_t frame, std::uint32_t sampleRate) {
    return frame * 1000 / sampleRate;
}

std::uint64_t heardFrame(std::uint64_t startFrame, std::uint64_t played, std::uint64_t frames, bool looping) {
    const std::uint64_t position = startFrame + played;
    return looping ? position % frames : std::min(position, frames);
}

bool Feeder::round() {
    bool inFlight = false;
    for (std::size_t slot = 0; slot < kelmora::audioSlots; ++slot) {
        if (device_.queued(slot)) {
            inFlight = true;
            continue;
        }
        if (ended_) continue;
        const std::span<std::int16_t> buffer = ring_.subspan(slot * bufferSamples, bufferSamples);
        const Filled filled = fill(buffer);
        ended_ = filled.atEnd;
        if (!filled.holdsFrames) continue;
        volume_.apply(buffer);
        if (device_.write(slot, buffer))
            inFlight = true;
        else
            ended_ = true;
    }
    return inFlight || !ended_;
}

// A track that ends with the buffer is noticed with the next one.
Feeder::Filled Feeder::fill(std::span<std::int16_t> buffer) {
    const std::uint64_t frames = track_.frames();
    std::uint64_t cursor = cursor_;
    std::size_t filled = 0;
    while (filled < bufferFrames) {
        if (frames == 0 || (cursor >= frames && !looping_)) {
            std::ranges::fill(buffer.subspan(filled * 2), std::int16_t{0});
            cursor_ = cursor;
            return {filled > 0, true};
        }
        if (cursor >= frames) cursor = 0;
        const auto part =
            static_cast<std::size_t>(std::min<std::uint64_t>(frames - cursor, bufferFrames - filled));
        track_.read(cursor, buffer.subspan(filled * 2, part * 2));
        cursor += part;
        filled += part;
    }
    cursor_ = cursor;
    return {true, false};
}

}  // namespace vesper::mixer
