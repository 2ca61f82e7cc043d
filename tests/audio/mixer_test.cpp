#include "audio/mixer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "audio/track.h"
#include "audio/wav_writer.h"
#include "base/whole_file.h"
#include "platform/memory_audio.h"
#include "shim/shim.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace vesper::mixer {
namespace {

using kelmora::lastMemoryAudioStream;
using kelmora::setEnvironment;
using Samples = std::vector<std::int16_t>;
using StreamPointer = std::shared_ptr<kelmora::MemoryAudioStream>;

constexpr std::uint32_t rate = 10000;  // ten frames a millisecond

Samples trackOf(std::size_t frames) {
    Samples samples;
    for (std::size_t i = 0; i < frames * 2; ++i) samples.push_back(static_cast<std::int16_t>(i % 30000 + 1));
    return samples;
}

bool soon(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

void playFrames(const StreamPointer& stream, std::size_t frames) {
    EXPECT_TRUE(soon([&] { return (frames -= stream->consume(frames)) == 0; }));
}

class Mixer : public testing::Test {
protected:
    Mixer() { setEnvironment("KELMORA_AUDIO", "memory"); }
    ~Mixer() override {
        Close(handle_);
        setEnvironment("KELMORA_AUDIO", nullptr);
    }
    StreamPointer play(std::uint64_t offsetMs, bool loop) {
        EXPECT_TRUE(Play(handle_, offsetMs, loop));
        return lastMemoryAudioStream();
    }

    Samples samples_ = trackOf(20000);
    void* handle_ = OpenPCMTrack(samples_.data(), samples_.size(), rate, 2);
};

TEST_F(Mixer, opensWholeStereoFramesOnly) {
    EXPECT_NE(handle_, nullptr);
    EXPECT_EQ(OpenPCMTrack(nullptr, 2, rate, 2), nullptr);
    EXPECT_EQ(OpenPCMTrack(samples_.data(), 0, rate, 2), nullptr);
    EXPECT_EQ(OpenPCMTrack(samples_.data(), 3, rate, 2), nullptr);
    EXPECT_EQ(OpenPCMTrack(samples_.data(), 2, 0, 2), nullptr);
    EXPECT_EQ(OpenPCMTrack(samples_.data(), 2, rate, 1), nullptr);
}

TEST_F(Mixer, playsATrackToItsEnd) {
    const StreamPointer stream = play(0, false);
    EXPECT_EQ(stream->sampleRate(), rate);
    playFrames(stream, 12345);
    EXPECT_EQ(GetCurrentOffset(handle_), 1234u);
    playFrames(stream, 20480 - 12345);
    EXPECT_TRUE(soon([&] { return GetCurrentOffset(handle_) == 0; }));
    EXPECT_EQ(Stop(handle_), 0u);
    Samples expected = samples_;
    expected.resize(20480 * 2);
    EXPECT_EQ(stream->played(), expected);
}

TEST_F(Mixer, followsItsVolumeWhileItPlays) {
    const auto volume = std::make_shared<TrackVolume>();
    UseVolume(handle_, volume);
    volume->set(0.5);
    const StreamPointer stream = play(0, true);
    playFrames(stream, 9000);
    for (std::size_t i = 0; i < 18000; ++i) {
        const int expected = (samples_[i] + 1) / 2;
        ASSERT_EQ(stream->played()[i], expected) << i;
    }
    volume->set(1);
    playFrames(stream, 20000);
    EXPECT_EQ(stream->played()[28000 * 2], samples_[8000 * 2]);
    UseVolume(nullptr, volume);
}

TEST_F(Mixer, pausesAndResumes) {
    StreamPointer stream = play(0, false);
    playFrames(stream, 5009);
    EXPECT_EQ(Stop(handle_), 500u);
    EXPECT_EQ(Stop(handle_), 500u);
    EXPECT_EQ(GetCurrentOffset(handle_), 500u);
    stream = play(500, false);
    EXPECT_EQ(GetCurrentOffset(handle_), 500u);
    playFrames(stream, 1);
    EXPECT_EQ(stream->played()[0], samples_[5000 * 2]);
    stream = play(1, false);
    playFrames(stream, 20);
    EXPECT_EQ(Stop(handle_), 3u);
    EXPECT_EQ(stream->played()[0], samples_[20]);
}

// With the whole track fed and in flight, a stop must not be taken for the end.
TEST_F(Mixer, pausesInTheLastBuffers) {
    for (int round = 0; round < 50; ++round) {
        const StreamPointer stream = play(1900, false);
        EXPECT_TRUE(soon([&] { return stream->slotsInFlight() > 0; }));
        stream->consume(500);
        ASSERT_EQ(Stop(handle_), 1950u);
    }
}

TEST_F(Mixer, loopsReportOffsetsWithinTheTrack) {
    const StreamPointer stream = play(0, true);
    playFrames(stream, 3 * 20000 + 770);
    EXPECT_EQ(Stop(handle_), 77u);
    for (std::size_t i = 0; i < stream->played().size(); ++i)
        ASSERT_EQ(stream->played()[i], samples_[i % samples_.size()]) << i;
}

TEST_F(Mixer, playsNothingFromBehindTheEnd) {
    const StreamPointer stream = play(9999999, false);
    EXPECT_TRUE(soon([&] { return GetCurrentOffset(handle_) == 0; }));
    EXPECT_EQ(stream->consume(1), 0u);
}

TEST_F(Mixer, stopsAllAndClosesWhilePlaying) {
    const Samples shortTrack = trackOf(100);
    void* other = OpenPCMTrack(shortTrack.data(), shortTrack.size(), rate, 2);
    const StreamPointer first = play(0, true);
    ASSERT_TRUE(Play(other, 0, true));
    const StreamPointer second = lastMemoryAudioStream();
    playFrames(first, 30);
    playFrames(second, 50);
    StopAll();
    EXPECT_EQ(first->slotsInFlight() + second->slotsInFlight(), 0u);
    EXPECT_EQ(GetCurrentOffset(handle_), 3u);
    EXPECT_EQ(GetCurrentOffset(other), 5u);
    ASSERT_TRUE(Play(other, 0, true));
    Close(other);
    EXPECT_EQ(lastMemoryAudioStream()->slotsInFlight(), 0u);
    EXPECT_FALSE(Play(other, 0, false));
    EXPECT_EQ(Stop(other), 0u);
    EXPECT_EQ(GetCurrentOffset(nullptr), 0u);
    Close(other);
}

TEST_F(Mixer, namesAnUnknownOutput) {
    setEnvironment("KELMORA_AUDIO", "memroy");
    EXPECT_THROW(Play(handle_, 0, false), std::runtime_error);
    EXPECT_EQ(Stop(handle_), 0u);
}

TEST_F(Mixer, leavesTracksThatAreNoLongerOpenAlone) {
    const kelmora::TemporaryFolder folder;
    const std::string path = (folder / "track.wav").string();
    ASSERT_TRUE(wav::encodeFile(path.c_str(), {{1, 2, 3}, rate, 1}));
    audio::Track* track = audio::openFile(path.c_str());
    std::filesystem::remove(path);
    ASSERT_NE(track, nullptr);
    EXPECT_EQ(track->samples, (Samples{1, 1, 2, 2, 3, 3}));
    EXPECT_TRUE(audio::play(track, 0, true));
    audio::close(track);
    audio::close(track);
    EXPECT_FALSE(audio::play(track, 0, true));
    EXPECT_FALSE(audio::save(track, path.c_str()));
    EXPECT_EQ(audio::pause(track), 0);
    EXPECT_EQ(audio::openFile(path.c_str()), nullptr);
}

Samples withoutSilence(const std::string& bytes) {
    Samples samples(bytes.size() / 2);
    std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    std::erase(samples, std::int16_t{0});
    return samples;
}

// In one test, since the system's output keeps the driver it found first: a repeat finds it there.
TEST_F(Mixer, usesTheSystemsOutput) {
    if (platform_is_windows()) GTEST_SKIP() << "tools/check_windows_sound listens to waveOut";
    static bool firstRun = true;
    setEnvironment("KELMORA_AUDIO", "sdl");
    if (std::exchange(firstRun, false)) {
        setEnvironment("SDL_AUDIODRIVER", "none_of_these");
        EXPECT_FALSE(Play(handle_, 700, false));
        EXPECT_EQ(Stop(handle_), 700u);
    }

    const kelmora::TemporaryFolder folder;
    const std::string path = (folder / "played.raw").string();
    setEnvironment("SDL_AUDIODRIVER", "disk");
    setEnvironment("SDL_DISKAUDIOFILE", path.c_str());
    setEnvironment("SDL_DISKAUDIODELAY", "1");
    ASSERT_TRUE(Play(handle_, 100, false));
    EXPECT_TRUE(soon([&] { return GetCurrentOffset(handle_) == 0; }));
    EXPECT_EQ(Stop(handle_), 0u);
    EXPECT_EQ(withoutSilence(*kelmora::readWholeFile(path)),
              Samples(samples_.begin() + 2000, samples_.end()));

    ASSERT_TRUE(Play(handle_, 0, true));
    EXPECT_TRUE(soon([&] { return GetCurrentOffset(handle_) > 1000; }));
    EXPECT_GT(Stop(handle_), 1000u);
    for (const char* name : {"SDL_AUDIODRIVER", "SDL_DISKAUDIOFILE", "SDL_DISKAUDIODELAY"})
        setEnvironment(name, nullptr);
}

}  // namespace
}  // namespace vesper::mixer
