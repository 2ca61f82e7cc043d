#include <algorithm>
#include <atomic>
#include <bit>

#include "platform/audio_device.h"
#include "platform/audio_queue.h"
#include "platform/linux/sdl_library.h"

namespace kelmora {
namespace {

// Beyond these the conversion to the hardware's rate takes unreasonable time or memory.
constexpr std::uint32_t lowestRate = 1000;
constexpr std::uint32_t highestRate = 768000;

// Opening the sound service is slow, so it stays open from the first sound on. Tried again while there is
// none.
bool startSession() {
    if (sdl().wasInit(SDL_INIT_AUDIO) != 0) return true;
    sdl().setMainReady();
    sdl().setHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    return sdl().initSubSystem(SDL_INIT_AUDIO) == 0;
}

// Drivers that find no hardware complain on the error stream with each try, so one failure holds until some
// is plugged in.
std::atomic<bool> lastOpenFailed = false;

bool noHardware() {
    return lastOpenFailed && sdl().getNumAudioDevices(0) == 0;
}

// About 10 ms: what is asked for at once. Closing the device waits for two of these.
Uint16 requestFrames(std::uint32_t sampleRate) {
    return static_cast<Uint16>(std::bit_ceil(sampleRate / 100));
}

class SdlAudioDevice : public AudioDevice {
public:
    ~SdlAudioDevice() override {
        if (device_ != 0) sdl().closeAudioDevice(device_);
    }
    bool open(std::uint32_t sampleRate);

    bool write(std::size_t slot, std::span<const std::int16_t> samples) override;
    bool queued(std::size_t slot) const override { return queue_.holds(slot); }
    void wait(std::chrono::milliseconds limit) override { queue_.wait(limit); }
    void wake() override { queue_.wake(); }
    std::uint64_t position() const override { return queue_.taken() / 2; }
    void reset() override { queue_.clear(); }

private:
    static void SDLCALL fill(void* self, Uint8* stream, int length);

    SDL_AudioDeviceID device_ = 0;
    std::atomic<bool> started_ = false;
    AudioQueue queue_;
};

bool SdlAudioDevice::open(std::uint32_t sampleRate) {
    if (sampleRate < lowestRate || sampleRate > highestRate || !startSession()) return false;
    if (noHardware()) return false;
    SDL_AudioSpec wanted{};
    wanted.freq = static_cast<int>(sampleRate);
    wanted.format = AUDIO_S16SYS;
    wanted.channels = 2;
    wanted.samples = requestFrames(sampleRate);
    wanted.callback = fill;
    wanted.userdata = this;
    device_ = sdl().openAudioDevice(nullptr, 0, &wanted, nullptr, 0);
    lastOpenFailed = device_ == 0;
    return device_ != 0;
}

bool SdlAudioDevice::write(std::size_t slot, std::span<const std::int16_t> samples) {
    queue_.push(slot, samples);
    // Devices open paused, so that the first request finds frames.
    if (!started_.exchange(true)) sdl().pauseAudioDevice(device_, 0);
    return true;
}

// On SDL's own thread. A feeder that is late is heard as silence.
void SDLCALL SdlAudioDevice::fill(void* self, Uint8* stream, int length) {
    const std::span<std::int16_t> out(reinterpret_cast<std::int16_t*>(stream),
                                      static_cast<std::size_t>(length) / sizeof(std::int16_t));
    const std::size_t count = static_cast<SdlAudioDevice*>(self)->queue_.take(out);
    std::ranges::fill(out.subspan(count), std::int16_t{0});
}

}  // namespace

std::unique_ptr<AudioDevice> openSystemAudio(std::uint32_t sampleRate) {
    if (!SdlLibrary::load()) return nullptr;
    auto device = std::make_unique<SdlAudioDevice>();
    if (!device->open(sampleRate)) return nullptr;
    return device;
}

const char* systemAudioName() {
    return "sdl";
}

}  // namespace kelmora
