#include "audio/track_edit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <string>

#include "audio/frequency_analysis.h"
#include "base/byte_writer.h"
#include "codec/crc32.h"
#include "support/places.h"

namespace vesper::audio {
namespace {

using Samples = std::vector<std::int16_t>;

// Closes its track at the end.
class OpenTrack {
public:
    explicit OpenTrack(Track* track) : track_(track) {}
    OpenTrack(std::uint32_t rate, Samples samples, std::uint16_t channels = 2)
        : track_(adoptSound({std::move(samples), rate, channels})) {}
    OpenTrack(const OpenTrack&) = delete;
    OpenTrack& operator=(const OpenTrack&) = delete;
    ~OpenTrack() { close(track_); }
    operator Track*() const { return track_; }
    Track* operator->() const { return track_; }
    std::size_t frames() const { return track_->samples.size() / track_->channels; }

private:
    Track* track_;
};

// The same numbers as in tools/make_track_sums.py.
class Draw {
public:
    explicit Draw(std::uint64_t seed) : state_(seed) {}
    int operator()(int below) {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<int>((state_ >> 33) % static_cast<std::uint64_t>(below));
    }
    template <typename T, std::size_t Count>
    T of(const T (&choices)[Count]) {
        return choices[(*this)(static_cast<int>(Count))];
    }

private:
    std::uint64_t state_;
};

constexpr std::uint32_t rates[] = {8000, 11025, 22050, 44100, 48000, 1000, 7};
constexpr double factors[] = {0.5, 2.0, 1.0, 0.333, 1.5, 3.7, 0.9999, 1.059463, 40.0, 0.25};
constexpr const char* shapes[] = {"square", "sine", "saw"};
constexpr const char* sides[] = {"left", "right", "both"};
constexpr int farthest = 0x7FFFFFFF;

Track* drawTrack(Draw& draw) {
    wav::DecodedFile sound;
    sound.sampleRate = draw.of(rates);
    sound.channels = 2;
    const int frames = draw(300);
    const bool loud = draw(3) == 0;
    for (int i = 0; i < frames * 2; ++i) {
        const int value = loud ? (draw(2) != 0 ? 32767 : -32768) : draw(65536) - 32768;
        sound.samples.push_back(static_cast<std::int16_t>(value));
    }
    return adoptSound(std::move(sound));
}

using Values = std::vector<std::int32_t>;

Values valuesOf(const Track* track) {
    return {track->samples.begin(), track->samples.end()};
}

Values drawTone(Draw& draw) {
    const char* shape = draw.of(shapes);
    const char* side = draw.of(sides);
    const int frequency = draw(4) != 0 ? draw(30000) : draw(4);
    const OpenTrack track(form(frequency, draw(9), shape, side));
    return valuesOf(track);
}

Values drawSearch(Draw& draw) {
    constexpr int rate = 8000;
    Samples samples;
    for (int i = 0; i < 1600 * 2; ++i) samples.push_back(static_cast<std::int16_t>(draw(2001) - 1000));
    const int frequency = 200 + draw(1000);
    const int start = draw(1000);
    const int end = start + draw(600);
    for (int i = start; i < end; ++i)
        samples[static_cast<std::size_t>(i) * 2] = i * frequency % rate * 2 < rate ? 9000 : -9000;
    const double tolerance = draw(3) * 5;
    const int minimum = draw(400);
    const double threshold = (1 + draw(12)) / 10.0;
    const double wanted = frequency + draw(5);
    const TrackAudioView view{samples.data(), samples.size(), rate, 2};
    Values values;
    for (const FrequencyMatch& match :
         findFrequencyMatches(view, wanted, tolerance, static_cast<std::uint64_t>(minimum), threshold)) {
        values.push_back(static_cast<std::int32_t>(match.start));
        values.push_back(static_cast<std::int32_t>(match.end));
    }
    return values;
}

Values drawCase(Draw& draw) {
    const int kind = draw(6);
    if (kind == 0) return drawTone(draw);
    if (kind == 5) return drawSearch(draw);
    const OpenTrack track(drawTrack(draw));
    if (kind == 1) {
        const OpenTrack other(draw(8) == 0 ? nullptr : drawTrack(draw));
        const int offset = draw(5) != 0 ? draw(30) : draw(farthest);
        EXPECT_TRUE(add(track, other ? other : track, offset));
    } else if (kind == 2) {
        const int start = draw(30);
        const int length = draw(5) != 0 ? draw(30) : draw(farthest - 30);
        EXPECT_TRUE(trim(track, start, start + length));
    } else {
        EXPECT_TRUE((kind == 3 ? pitch : speed)(track, draw.of(factors)));
    }
    return valuesOf(track);
}

TEST(TrackEdit, ThousandsOfEditsComeToWhatTheFormulasSay) {
    std::ifstream sums(kelmora::sourceFolder() + "/tests/audio/track_sums.txt");
    int lines = 0;
    std::uint64_t seed = 0;
    std::uint32_t expected = 0;
    while (sums >> std::dec >> seed >> std::hex >> expected) {
        ++lines;
        Draw draw(seed);
        kelmora::ByteWriter bytes;
        for (int i = 0; i < 20; ++i) {
            const Values values = drawCase(draw);
            bytes.u32(static_cast<std::uint32_t>(values.size()));
            for (const std::int32_t value : values) bytes.i32(value);
        }
        EXPECT_EQ(vh::png::crc32(bytes.take()), expected) << "seed " << seed;
    }
    EXPECT_EQ(lines, 150);
}

TEST(TrackEdit, TonesHaveTheirLengthPeakAndSide) {
    const OpenTrack second(form(440, 1000, "sine", "both"));
    EXPECT_EQ(second.frames(), 44100u);
    EXPECT_EQ(second->sampleRate, 44100u);
    const OpenTrack square(form(1, 1, "square", "both"));
    EXPECT_EQ(square->samples, Samples(88, 24575));
    const OpenTrack flip(form(22050, 1, "square", "right"));
    EXPECT_EQ(Samples(flip->samples.begin(), flip->samples.begin() + 4), (Samples{0, 24575, 0, -24575}));
    const OpenTrack silence(form(0, 1000, "saw", "left"));
    EXPECT_EQ(silence->samples, Samples(88200, 0));
    const OpenTrack empty(form(440, 0, "sine", "both"));
    ASSERT_TRUE(isOpen(empty));
    EXPECT_TRUE(empty->samples.empty());
    EXPECT_EQ(empty->mixerHandle, nullptr);
    EXPECT_NE(second->mixerHandle, nullptr);
}

TEST(TrackEdit, RefusesAndLeavesTheTrackAlone) {
    const double endless = std::numeric_limits<double>::infinity();
    EXPECT_EQ(form(-1, 1, "sine", "both"), nullptr);
    EXPECT_EQ(form(1, -1, "sine", "both"), nullptr);
    EXPECT_EQ(form(1, 1, "Sine", "both"), nullptr);
    EXPECT_EQ(form(1, 1, "sine", ""), nullptr);
    EXPECT_EQ(form(1, 1, nullptr, "both"), nullptr);
    EXPECT_EQ(form(1, 1, "sine", nullptr), nullptr);
    // Days of sound.
    EXPECT_EQ(form(1, farthest, "sine", "both"), nullptr);
    const Samples before(400, 7);
    const OpenTrack track(1000, before);
    EXPECT_FALSE(trim(track, 2000, 1000));
    EXPECT_FALSE(trim(track, -1, 1000));
    EXPECT_FALSE(add(track, track, -1));
    for (const double factor : {0.0, -1.0, endless, -endless, std::nan("")}) {
        EXPECT_FALSE(pitch(track, factor));
        EXPECT_FALSE(speed(track, factor));
    }
    EXPECT_FALSE(speed(track, 1e-7));
    EXPECT_FALSE(speed(track, 1e-320));
    EXPECT_EQ(track->samples, before);
    Track stranger;
    for (Track* other : {static_cast<Track*>(nullptr), &stranger}) {
        TrackAudioView view{before.data(), 1, 1, 1};
        EXPECT_FALSE(inspect(other, &view));
        EXPECT_EQ(view.samples, nullptr);
        EXPECT_FALSE(add(track, other, 0) || add(other, track, 0) || trim(other, 0, 1) || pitch(other, 2) ||
                     speed(other, 2));
    }
}

TEST(TrackEdit, WhatHasNothingToChangeKeepsTheMixersCopy) {
    const OpenTrack track(1000, Samples(400, 7));
    const OpenTrack empty(1000, {});
    void* handle = track->mixerHandle;
    EXPECT_TRUE(add(track, track, 200));
    EXPECT_TRUE(add(track, track, std::numeric_limits<long long>::max()));
    EXPECT_TRUE(add(track, empty, 0) && add(empty, track, 0));
    EXPECT_TRUE(pitch(track, 1.0) && speed(track, 1.0) && speed(empty, 2.0));
    EXPECT_EQ(track->mixerHandle, handle);
    EXPECT_TRUE(trim(track, 1000, 1000));
    EXPECT_TRUE(track->samples.empty());
    EXPECT_EQ(track->mixerHandle, nullptr);
}

TEST(TrackEdit, MonoIsEditedButNeverMixed) {
    const OpenTrack mono(1000, {0, 100, 200, 300}, 1);
    EXPECT_EQ(mono->mixerHandle, nullptr);
    EXPECT_FALSE(add(mono, mono, 0));
    EXPECT_TRUE(speed(mono, 0.5));
    EXPECT_EQ(mono->samples, (Samples{0, 50, 100, 150, 200, 250, 300, 300}));
    EXPECT_TRUE(pitch(mono, 4.0));
    EXPECT_EQ(mono->samples, (Samples{0, 200, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(trim(mono, 1, 2));
    EXPECT_EQ(mono->samples, Samples{200});
}

TEST(FrequencyAnalysis, StrengthOfATone) {
    const OpenTrack tone(form(441, 100, "sine", "right"));
    TrackAudioView view;
    ASSERT_TRUE(inspect(tone, &view));
    EXPECT_NEAR(frequencyStrengthInWindow(view, 441, 0, 1000), 1.0, 1e-6);
    EXPECT_LT(frequencyStrengthInWindow(view, 882, 0, 1000), 1e-6);
    EXPECT_EQ(frequencyStrengthInWindow(view, 441, 5, 8), 0.0);
    EXPECT_GT(frequencyStrengthInWindow(view, 441, 5, 9), 0.0);
    EXPECT_EQ(frequencyStrengthInWindow(view, -1, 0, 1000), 0.0);
    EXPECT_LT(strongestFrequencyMatch(view, 431, 0, 0, 4410), 0.1);
    EXPECT_GT(strongestFrequencyMatch(view, 431, 10, 0, 4410), 0.9);
    EXPECT_EQ(audioSampleAt(view, 25, 0), 0.0);
    EXPECT_EQ(audioSampleAt(view, 25, 1), tone->samples[51] / 32768.0);
    EXPECT_EQ(audioSampleAt(view, 25, 2), 0.0);
}

TEST(FrequencyAnalysis, OddTracksHaveNoMatches) {
    const OpenTrack silence(form(0, 1000, "sine", "both"));
    TrackAudioView view;
    ASSERT_TRUE(inspect(silence, &view));
    EXPECT_TRUE(findFrequencyMatches(view, 440, 5, 0, 0.01).empty());
    EXPECT_TRUE(findFrequencyMatches({}, 440, 5, 0, 0.01).empty());
    const Samples few(8, 1000);
    EXPECT_TRUE(findFrequencyMatches({few.data(), few.size(), 3, 2}, 1, 0, 0, 0.01).empty());
    EXPECT_TRUE(findFrequencyMatches({few.data(), few.size(), 0xFFFFFFFF, 2}, 1e-300, 0, 0, 0.01).empty());
}

}  // namespace
}  // namespace vesper::audio
