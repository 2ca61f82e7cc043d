#include <array>

#include "platform/audio_device.h"
#include "platform/windows/handle.h"

namespace kelmora {
namespace {

class WaveOutDevice : public AudioDevice {
public:
    ~WaveOutDevice() override;
    bool open(std::uint32_t sampleRate);

    bool write(std::size_t slot, std::span<const std::int16_t> samples) override;
    bool queued(std::size_t slot) const override;
    void wait(std::chrono::milliseconds limit) override;
    void wake() override { SetEvent(event_.get()); }
    std::uint64_t position() const override;
    void reset() override { waveOutReset(device_); }

private:
    void release(WAVEHDR& header);

    Handle event_;
    HWAVEOUT device_ = nullptr;
    std::uint32_t sampleRate_ = 0;
    std::array<WAVEHDR, audioSlots> headers_{};
};

WaveOutDevice::~WaveOutDevice() {
    if (!device_) return;
    waveOutReset(device_);
    for (WAVEHDR& header : headers_) release(header);
    waveOutClose(device_);
}

bool WaveOutDevice::open(std::uint32_t sampleRate) {
    sampleRate_ = sampleRate;
    event_ = Handle(CreateEventA(nullptr, FALSE, FALSE, nullptr));
    if (!event_) return false;
    WAVEFORMATEX format{};
    format.wFormatTag = WAVE_FORMAT_PCM;
    format.nChannels = 2;
    format.nSamplesPerSec = sampleRate;
    format.wBitsPerSample = 16;
    format.nBlockAlign = 4;
    format.nAvgBytesPerSec = sampleRate * 4;
    const auto event = reinterpret_cast<DWORD_PTR>(event_.get());
    if (waveOutOpen(&device_, WAVE_MAPPER, &format, event, 0, CALLBACK_EVENT) == MMSYSERR_NOERROR)
        return true;
    device_ = nullptr;
    return false;
}

void WaveOutDevice::release(WAVEHDR& header) {
    if ((header.dwFlags & WHDR_PREPARED) != 0) waveOutUnprepareHeader(device_, &header, sizeof header);
    header = {};
}

// The system only reads from the buffer, whatever its header's type says.
bool WaveOutDevice::write(std::size_t slot, std::span<const std::int16_t> samples) {
    WAVEHDR& header = headers_[slot];
    release(header);
    header.lpData = reinterpret_cast<char*>(const_cast<std::int16_t*>(samples.data()));
    header.dwBufferLength = static_cast<DWORD>(samples.size_bytes());
    return waveOutPrepareHeader(device_, &header, sizeof header) == MMSYSERR_NOERROR &&
           waveOutWrite(device_, &header, sizeof header) == MMSYSERR_NOERROR;
}

// The system changes the flags from a thread of its own.
bool WaveOutDevice::queued(std::size_t slot) const {
    const volatile DWORD& flags = headers_[slot].dwFlags;
    return (flags & WHDR_INQUEUE) != 0;
}

void WaveOutDevice::wait(std::chrono::milliseconds limit) {
    WaitForSingleObject(event_.get(), static_cast<DWORD>(limit.count()));
}

// A driver that does not count in the unit asked for answers in one of its own.
std::uint64_t WaveOutDevice::position() const {
    MMTIME time{};
    time.wType = TIME_SAMPLES;
    if (waveOutGetPosition(device_, &time, sizeof time) != MMSYSERR_NOERROR) return 0;
    switch (time.wType) {
        case TIME_SAMPLES:
            return time.u.sample;
        case TIME_BYTES:
            return time.u.cb / 4;
        case TIME_MS:
            return std::uint64_t{time.u.ms} * sampleRate_ / 1000;
        default:
            return 0;
    }
}

}  // namespace

std::unique_ptr<AudioDevice> openSystemAudio(std::uint32_t sampleRate) {
    auto device = std::make_unique<WaveOutDevice>();
    if (!device->open(sampleRate)) return nullptr;
    return device;
}

const char* systemAudioName() {
    return "waveout";
}

}  // namespace kelmora
