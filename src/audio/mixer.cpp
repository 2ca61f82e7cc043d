#include "audio/mixer.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <vector>

#include "audio/feeder.h"
#include "platform/audio_device.h"
#include "platform/system.h"

namespace vesper::mixer {
namespace {

// Bounds how late the feeder notices that a report from the device was lost.
constexpr std::chrono::milliseconds feederWait{100};

// `source`, `looping`, `volume` itself, `ring` and `device` only change while no feeder runs.
struct WindowsAudioPlayer {
    std::unique_ptr<SampleSource> source;
    std::uint32_t sampleRate = 0;
    bool looping = false;
    std::shared_ptr<TrackVolume> volume = std::make_shared<TrackVolume>();
    std::vector<std::int16_t> ring;
    std::unique_ptr<kelmora::AudioDevice> device;
    std::thread thread;
    std::atomic<bool> running = false;
    std::atomic<bool> stopRequested = false;
    std::atomic<std::uint64_t> cursor = 0;      // the next frame to feed
    std::atomic<std::uint64_t> startFrame = 0;  // where the device's frame 0 stands in the track
    std::atomic<std::uint64_t> offsetMs = 0;    // while not playing

    std::uint64_t frames() const { return source->frames(); }
};

using PlayerPointer = std::shared_ptr<WindowsAudioPlayer>;

// The mutex guards the map and is never held across a device call or a join.
struct Players {
    std::mutex mutex;
    std::unordered_map<void*, PlayerPointer> players;
};

// Never destroyed: a feeder may still run while the process ends.
Players& registry() {
    static Players& instance = *new Players;
    return instance;
}

PlayerPointer findPlayer(void* handle) {
    Players& all = registry();
    const std::lock_guard lock(all.mutex);
    const auto found = all.players.find(handle);
    return found == all.players.end() ? nullptr : found->second;
}

// A stop frees the device's buffers, which must not pass for the track's natural end: the request is set
// first and looked at last.
void feederThread(WindowsAudioPlayer& player) {
    platform_raise_thread_priority();
    Feeder feeder(*player.device, *player.source, player.ring, player.looping, player.cursor, *player.volume);
    while (!player.stopRequested) {
        if (!feeder.round()) {
            if (player.stopRequested) return;
            player.offsetMs = 0;
            player.running = false;
            return;
        }
        player.device->wait(feederWait);
    }
}

std::uint64_t currentOffset(const WindowsAudioPlayer& player) {
    if (!player.running || !player.device) return player.offsetMs;
    const std::uint64_t frame =
        heardFrame(player.startFrame, player.device->position(), player.frames(), player.looping);
    return offsetOfFrame(frame, player.sampleRate);
}

std::uint64_t stopPlayback(WindowsAudioPlayer& player) {
    const bool wasRunning = player.running;
    if (wasRunning) player.offsetMs = currentOffset(player);
    player.stopRequested = true;
    if (player.device) {
        player.device->wake();
        player.device->reset();
    }
    if (player.thread.joinable()) player.thread.join();
    // It played out while it was being stopped.
    if (wasRunning && !player.running) player.offsetMs = 0;
    player.device.reset();
    player.running = false;
    return player.offsetMs;
}

bool startFeeder(WindowsAudioPlayer& player) {
    player.stopRequested = false;
    player.running = true;
    try {
        player.thread = std::thread(feederThread, std::ref(player));
        return true;
    } catch (const std::system_error&) {
        player.running = false;
        stopPlayback(player);
        return false;
    }
}

}  // namespace

void* OpenSource(std::unique_ptr<SampleSource> source, std::uint32_t sampleRate) {
    if (!source || source->frames() == 0 || sampleRate == 0) return nullptr;
    auto player = std::make_shared<WindowsAudioPlayer>();
    player->source = std::move(source);
    player->sampleRate = sampleRate;
    Players& all = registry();
    const std::lock_guard lock(all.mutex);
    void* handle = player.get();
    all.players.emplace(handle, std::move(player));
    return handle;
}

void* OpenPCMTrack(const std::int16_t* samples, std::uint64_t sampleCount, std::uint32_t sampleRate,
                   std::uint16_t channels) try {
    if (!samples || sampleCount == 0 || sampleCount % 2 != 0 || channels != 2) return nullptr;
    return OpenSource(std::make_unique<PcmSource>(std::vector(samples, samples + sampleCount)), sampleRate);
} catch (const std::bad_alloc&) {
    return nullptr;
}

bool Play(void* handle, std::uint64_t offsetMs, bool loop) {
    const PlayerPointer player = findPlayer(handle);
    if (!player) return false;
    stopPlayback(*player);
    player->looping = loop;
    const std::uint64_t frame = frameOfOffset(offsetMs, player->sampleRate, player->frames());
    player->startFrame = frame;
    player->cursor = frame;
    player->offsetMs = offsetOfFrame(frame, player->sampleRate);
    player->device = kelmora::openAudioDevice(player->sampleRate);
    if (!player->device) return false;
    player->ring.assign(ringSamples, 0);
    player->volume->begin();
    return startFeeder(*player);
}

void UseVolume(void* handle, std::shared_ptr<TrackVolume> volume) {
    const PlayerPointer player = findPlayer(handle);
    if (!player) return;
    stopPlayback(*player);
    player->volume = std::move(volume);
}

std::uint64_t Stop(void* handle) {
    const PlayerPointer player = findPlayer(handle);
    return player ? stopPlayback(*player) : 0;
}

std::uint64_t GetCurrentOffset(void* handle) {
    const PlayerPointer player = findPlayer(handle);
    return player ? currentOffset(*player) : 0;
}

void StopAll() {
    std::vector<PlayerPointer> list;
    {
        Players& all = registry();
        const std::lock_guard lock(all.mutex);
        list.reserve(all.players.size());
        for (const auto& [handle, player] : all.players) list.push_back(player);
    }
    for (const PlayerPointer& player : list) stopPlayback(*player);
}

void Close(void* handle) {
    PlayerPointer player;
    {
        Players& all = registry();
        const std::lock_guard lock(all.mutex);
        const auto found = all.players.find(handle);
        if (found == all.players.end()) return;
        player = std::move(found->second);
        all.players.erase(found);
    }
    stopPlayback(*player);
}

}  // namespace vesper::mixer
