#include "audio/volume.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

#include "audio/track.h"
#include "audio/track_edit.h"

namespace vesper::mixer {
namespace {

using Samples = std::vector<std::int16_t>;

class Volume : public testing::Test {
protected:
    ~Volume() override { audio::resetVolumes(); }

    // So many frames of one value, fed; their left samples.
    Samples fed(std::size_t frames, std::int16_t value = 20000) {
        Samples samples(frames * 2, value);
        volume_.apply(samples);
        Samples left;
        for (std::size_t i = 0; i < samples.size(); i += 2) {
            EXPECT_EQ(samples[i], samples[i + 1]);
            left.push_back(samples[i]);
        }
        return left;
    }

    TrackVolume volume_;
};

TEST_F(Volume, FullVolumeChangesNoSample) {
    Samples all;
    for (int value = -32768; value < 32768; ++value) all.push_back(static_cast<std::int16_t>(value));
    Samples played = all;
    volume_.begin();
    volume_.apply(played);
    EXPECT_EQ(played, all);
    // Also on the slow way, and after a way down and up again.
    volume_.set(1);
    volume_.apply(played);
    EXPECT_EQ(played, all);
    volume_.set(0.25);
    fed(1000);
    volume_.fade(7, 300);
    fed(1000);
    setMasterVolume(1.0);
    volume_.apply(played);
    EXPECT_EQ(played, all);
}

TEST_F(Volume, WhatIsSetBeforePlayingHoldsFromTheFirstFrame) {
    volume_.set(0.5);
    setGroupVolume(Group::sound, 0.5);
    setGroupVolume(Group::music, 0);
    setMasterVolume(0.8);
    volume_.begin();
    EXPECT_EQ(fed(3), (Samples{4000, 4000, 4000}));
    EXPECT_EQ(fed(1, -20000), Samples{-4000});
    volume_.setGroup(Group::music);
    EXPECT_EQ(fed(4), (Samples{3000, 2000, 1000, 0}));
    EXPECT_EQ(fed(2), (Samples{0, 0}));
    EXPECT_DOUBLE_EQ(volume_.volume(), 0.5);
}

TEST_F(Volume, AStepWhilePlayingIsNoClick) {
    volume_.begin();
    volume_.set(0);
    EXPECT_DOUBLE_EQ(volume_.volume(), 0);
    const Samples heard = fed(2000);
    EXPECT_EQ(heard.front(), 20000);
    for (std::size_t i = 1; i < heard.size(); ++i) ASSERT_LE(std::abs(heard[i] - heard[i - 1]), 40) << i;
    EXPECT_EQ(heard[511], 39);
    EXPECT_EQ(heard[512], 0);
}

TEST_F(Volume, AFadeIsEvenAndWaitsForItsTrack) {
    volume_.set(0);
    volume_.fade(1, 4000);
    EXPECT_DOUBLE_EQ(volume_.volume(), 0);
    volume_.begin();
    Samples heard = fed(1000);
    volume_.begin();  // paused and played on
    EXPECT_DOUBLE_EQ(volume_.volume(), 0.25);
    for (const Samples& more : {fed(1000), fed(3000)}) heard.insert(heard.end(), more.begin(), more.end());
    for (int i = 0; i <= 4000; i += 100) EXPECT_EQ(heard[static_cast<std::size_t>(i)], 5 * i) << i;
    EXPECT_EQ(heard.back(), 20000);
    volume_.fade(0, 1000);
    fed(500);
    volume_.fade(1, 100);  // from where it has come to
    EXPECT_EQ(fed(101).front(), 10000);
    EXPECT_DOUBLE_EQ(volume_.volume(), 1);
    volume_.fade(0, 0);
    EXPECT_EQ(fed(1), Samples{0});
}

TEST_F(Volume, OddVolumesAreHeldToTheRange) {
    for (const auto& [asked, held] : {std::pair{-1.0, 0.0}, {5.0, 1.0}, {NAN, 0.0}, {INFINITY, 1.0}}) {
        volume_.set(asked);
        EXPECT_DOUBLE_EQ(volume_.volume(), held);
    }
    volume_.fade(0.5, ~std::uint64_t{0});
    fed(5000);
    EXPECT_NEAR(volume_.volume(), 1, 1e-4);
}

TEST_F(Volume, ATracksVolumeOutlastsItsEdits) {
    audio::Track* track = audio::form(441, 100, "square", "both");
    EXPECT_TRUE(audio::setVolume(track, 0.25));
    EXPECT_TRUE(audio::speed(track, 2));
    EXPECT_DOUBLE_EQ(audio::volumeOf(track), 0.25);
    EXPECT_TRUE(audio::fade(track, 1, -3));
    EXPECT_DOUBLE_EQ(audio::volumeOf(track), 1);
    audio::close(track);
    EXPECT_FALSE(audio::setVolume(track, 1));
    EXPECT_FALSE(audio::fade(track, 1, 1));
    EXPECT_DOUBLE_EQ(audio::volumeOf(track), 0);
}

}  // namespace
}  // namespace vesper::mixer
