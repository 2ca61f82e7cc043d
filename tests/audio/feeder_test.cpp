#include "audio/feeder.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace vesper::mixer {
namespace {

using Samples = std::vector<std::int16_t>;

// Keeps the blocks until the test frees their slots.
class SlotDevice : public kelmora::AudioDevice {
public:
    bool write(std::size_t slot, std::span<const std::int16_t> samples) override {
        if (refuses) return false;
        EXPECT_FALSE(busy[slot]);
        busy[slot] = true;
        order.push_back(slot);
        written.insert(written.end(), samples.begin(), samples.end());
        return true;
    }
    bool queued(std::size_t slot) const override { return busy[slot]; }
    void wait(std::chrono::milliseconds) override {}
    void wake() override {}
    std::uint64_t position() const override { return 0; }
    void reset() override { busy = {}; }

    std::array<bool, kelmora::audioSlots> busy{};
    std::vector<std::size_t> order;
    Samples written;
    bool refuses = false;
};

// No two frames near one another are alike and no sample is 0.
Samples trackOf(std::size_t frames) {
    Samples samples;
    for (std::size_t i = 0; i < frames; ++i) {
        samples.push_back(static_cast<std::int16_t>(i % 32000 + 1));
        samples.push_back(static_cast<std::int16_t>(-samples.back()));
    }
    return samples;
}

struct Fed {
    explicit Fed(std::size_t frames, bool looping = false, std::uint64_t start = 0)
        : track(trackOf(frames)),
          source(track),
          cursor(start),
          feeder(device, source, ring, looping, cursor, volume) {}

    // Rounds until the end, everything played in between.
    int roundsToEnd() {
        for (int count = 1; count < 100; ++count, device.reset())
            if (!feeder.round()) return count;
        return 0;
    }
    Samples expected(std::size_t from, std::size_t bufferCount) const {
        Samples samples(track.begin() + static_cast<std::ptrdiff_t>(from * 2), track.end());
        samples.resize(bufferCount * bufferSamples);
        return samples;
    }

    SlotDevice device;
    Samples track;
    PcmSource source;
    Samples ring = Samples(ringSamples);
    std::atomic<std::uint64_t> cursor;
    TrackVolume volume;
    Feeder feeder;
};

TEST(Feeder, keepsFourBuffersInFlight) {
    Fed fed(bufferFrames * 6);
    EXPECT_TRUE(fed.feeder.round());
    EXPECT_TRUE(fed.feeder.round());
    EXPECT_EQ(fed.device.written.size(), ringSamples);
    EXPECT_EQ(fed.cursor, bufferFrames * 4);
    fed.device.busy[0] = fed.device.busy[1] = false;
    EXPECT_TRUE(fed.feeder.round());
    EXPECT_EQ(fed.device.order, (std::vector<std::size_t>{0, 1, 2, 3, 0, 1}));
    EXPECT_EQ(fed.device.written, fed.track);
}

TEST(Feeder, padsTheLastBuffer) {
    Fed fed(bufferFrames + 100);
    EXPECT_EQ(fed.roundsToEnd(), 2);
    EXPECT_EQ(fed.device.written, fed.expected(0, 2));
    EXPECT_EQ(fed.cursor, bufferFrames + 100);
}

// The end is met when the next buffer finds no frames, and that buffer is not queued.
TEST(Feeder, endsBehindAFullBuffer) {
    Fed full(bufferFrames * 4);
    EXPECT_TRUE(full.feeder.round());
    full.device.reset();
    EXPECT_FALSE(full.feeder.round());
    EXPECT_EQ(full.device.written, full.track);
}

TEST(Feeder, startsAtTheCursor) {
    Fed fed(500, false, 499);
    EXPECT_EQ(fed.roundsToEnd(), 2);
    EXPECT_EQ(fed.device.written, fed.expected(499, 1));
    Fed behind(500, false, 500);
    EXPECT_FALSE(behind.feeder.round());
    EXPECT_TRUE(behind.device.written.empty());
}

TEST(Feeder, loopsWithoutAGap) {
    Fed fed(300, true, 299);
    EXPECT_TRUE(fed.feeder.round());
    ASSERT_EQ(fed.device.written.size(), ringSamples);
    for (std::size_t i = 0; i < ringSamples; ++i)
        ASSERT_EQ(fed.device.written[i], fed.track[(i + 299 * 2) % 600]) << i;
    fed.device.reset();
    EXPECT_TRUE(fed.feeder.round());
    Fed fromTheEnd(300, true, 300);
    EXPECT_TRUE(fromTheEnd.feeder.round());
    EXPECT_EQ(fromTheEnd.device.written[0], fromTheEnd.track[0]);
    Fed nothing(0, true);
    EXPECT_FALSE(nothing.feeder.round());
}

TEST(Feeder, endsWhenTheDeviceRefuses) {
    Fed fed(bufferFrames * 9);
    fed.device.refuses = true;
    EXPECT_FALSE(fed.feeder.round());
}

TEST(Offsets, roundDownAndStayInTheTrack) {
    EXPECT_EQ(frameOfOffset(1, 44100, 1000), 44u);
    EXPECT_EQ(offsetOfFrame(44, 44100), 0u);
    EXPECT_EQ(frameOfOffset(23, 44100, 1000), 1000u);
    EXPECT_EQ(frameOfOffset(std::numeric_limits<std::uint64_t>::max(), 44100, 1000), 1000u);
    EXPECT_EQ(frameOfOffset(std::numeric_limits<std::uint64_t>::max(), 1, 1000), 1000u);
    EXPECT_EQ(heardFrame(900, 50, 1000, false), 950u);
    EXPECT_EQ(heardFrame(900, 500, 1000, false), 1000u);
    EXPECT_EQ(heardFrame(900, 3100, 1000, true), 0u);
}

}  // namespace
}  // namespace vesper::mixer
