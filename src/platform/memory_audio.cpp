#include "platform/memory_audio.h"

#include <utility>

namespace kelmora {
namespace {

std::shared_ptr<MemoryAudioStream> lastStream;

class MemoryAudioDevice : public AudioDevice {
public:
    explicit MemoryAudioDevice(std::shared_ptr<MemoryAudioStream> stream) : stream_(std::move(stream)) {}
    ~MemoryAudioDevice() override { stream_->queue().clear(); }

    bool write(std::size_t slot, std::span<const std::int16_t> samples) override {
        stream_->queue().push(slot, samples);
        return true;
    }
    bool queued(std::size_t slot) const override { return stream_->queue().holds(slot); }
    void wait(std::chrono::milliseconds limit) override { stream_->queue().wait(limit); }
    void wake() override { stream_->queue().wake(); }
    std::uint64_t position() const override { return stream_->queue().taken() / 2; }
    void reset() override { stream_->queue().clear(); }

private:
    std::shared_ptr<MemoryAudioStream> stream_;
};

}  // namespace

std::size_t MemoryAudioStream::consume(std::size_t frames) {
    std::vector<std::int16_t> block(frames * 2);
    const std::size_t count = queue_.take(block);
    played_.insert(played_.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count));
    return count / 2;
}

std::size_t MemoryAudioStream::slotsInFlight() const {
    std::size_t count = 0;
    for (std::size_t slot = 0; slot < audioSlots; ++slot)
        if (queue_.holds(slot)) ++count;
    return count;
}

std::unique_ptr<AudioDevice> openMemoryAudio(std::uint32_t sampleRate) {
    lastStream = std::make_shared<MemoryAudioStream>(sampleRate);
    return std::make_unique<MemoryAudioDevice>(lastStream);
}

std::shared_ptr<MemoryAudioStream> lastMemoryAudioStream() {
    return lastStream;
}

}  // namespace kelmora
