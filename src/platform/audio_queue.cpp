#include "platform/audio_queue.h"

#include <algorithm>

namespace kelmora {

void AudioQueue::push(std::size_t slot, std::span<const std::int16_t> samples) {
    const std::lock_guard lock(mutex_);
    if (samples.empty() || holdsUnlocked(slot)) return;
    blocks_[slot] = samples;
    order_[count_++] = slot;
}

bool AudioQueue::holds(std::size_t slot) const {
    const std::lock_guard lock(mutex_);
    return holdsUnlocked(slot);
}

void AudioQueue::wait(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, limit, [this] { return signalled_; });
    signalled_ = false;
}

void AudioQueue::wake() {
    const std::lock_guard lock(mutex_);
    signalled_ = true;
    changed_.notify_all();
}

void AudioQueue::clear() {
    const std::lock_guard lock(mutex_);
    blocks_ = {};
    count_ = 0;
}

std::uint64_t AudioQueue::taken() const {
    const std::lock_guard lock(mutex_);
    return taken_;
}

std::size_t AudioQueue::take(std::span<std::int16_t> out) {
    const std::lock_guard lock(mutex_);
    std::size_t done = 0;
    while (done < out.size() && count_ > 0) {
        std::span<const std::int16_t>& block = blocks_[order_[0]];
        const std::size_t part = std::min(block.size(), out.size() - done);
        std::copy_n(block.begin(), part, out.begin() + static_cast<std::ptrdiff_t>(done));
        block = block.subspan(part);
        done += part;
        if (!block.empty()) continue;
        std::copy(order_.begin() + 1, order_.end(), order_.begin());
        --count_;
        signalled_ = true;
        changed_.notify_all();
    }
    taken_ += done;
    return done;
}

}  // namespace kelmora
