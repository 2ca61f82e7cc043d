#pragma once

#include <cstdint>
#include <vector>

#include "audio/track.h"

// Looks for stretches of a sound in which one frequency is strong, by correlating it with one sine at a time.
namespace vesper::audio {

// Frames; `end` is the first one behind.
struct FrequencyMatch {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
};

std::uint64_t audioFrameCount(const TrackAudioView& view);
// In [-1, 1); 0 for a channel that the view has not got.
double audioSampleAt(const TrackAudioView& view, std::uint64_t frame, std::uint16_t channel);

// How much of the window is that frequency, in the channel that has most of it: 0 for none, about 1 for a
// pure tone, never above 2. 0 for a window of 3 frames or fewer. The frames must be the view's.
double frequencyStrengthInWindow(const TrackAudioView& view, double frequency, std::uint64_t startFrame,
                                 std::uint64_t endFrame);
// The largest strength of the frequency and four others within `tolerance` of it.
double strongestFrequencyMatch(const TrackAudioView& view, double frequency, double tolerance,
                               std::uint64_t startFrame, std::uint64_t endFrame);

// Runs of windows, a quarter of a window apart, in which the strength reaches `threshold`, if they last for
// `minimumFrames`. The frequency is above 0 and below half the sample rate.
std::vector<FrequencyMatch> findFrequencyMatches(const TrackAudioView& view, double frequency,
                                                 double tolerance, std::uint64_t minimumFrames,
                                                 double threshold);

}  // namespace vesper::audio
