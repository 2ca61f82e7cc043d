#include "audio/frequency_analysis.h"

#include <algorithm>
#include <cmath>

#include "base/trigonometry.h"

namespace vesper::audio {
namespace {

constexpr double fullTurn = 6.283185307179586;
constexpr double sampleScale = 3.0517578125e-05;  // 1 / 32768
constexpr double leastEnergy = 1e-10;
constexpr std::uint64_t longestSilentWindow = 3;
constexpr double periodsPerWindow = 8.0;

// One turn of a sine's step per frame.
struct Rotation {
    double cosine;
    double sine;
};

// One channel of a window.
struct ChannelWindow {
    const std::int16_t* first;
    std::size_t stride;
    std::size_t frames;

    double sample(std::size_t frame) const { return first[frame * stride] * sampleScale; }
    double mean() const {
        // Samples are multiples of 2^-15, so that their sum has no rounding.
        std::int64_t sum = 0;
        for (std::size_t i = 0; i < frames; ++i) sum += first[i * stride];
        return static_cast<double>(sum) * sampleScale / static_cast<double>(frames);
    }
};

double strengthOf(const ChannelWindow& window, const Rotation& turn) {
    const double mean = window.mean();
    double re = 1;
    double im = 0;
    double sumRe = 0;
    double sumIm = 0;
    double energy = 0;
    for (std::size_t i = 0; i < window.frames; ++i) {
        const double x = window.sample(i) - mean;
        sumRe += x * re;
        sumIm += x * im;
        energy += x * x;
        const double turned = turn.sine * re + im * turn.cosine;
        re = re * turn.cosine - im * turn.sine;
        im = turned;
    }
    if (!(energy > leastEnergy)) return 0;
    return 2 * (sumRe * sumRe + sumIm * sumIm) / (energy * static_cast<double>(window.frames));
}

// Eight periods, but no less than a fiftieth of a second and no more than a quarter.
std::uint64_t windowFrames(const TrackAudioView& view, double frequency) {
    const std::uint64_t least = std::max<std::uint64_t>(8, view.sampleRate / 50);
    const std::uint64_t most = view.sampleRate / 4;
    const double periods = std::ceil(view.sampleRate * periodsPerWindow / frequency);
    std::uint64_t frames = most;
    if (periods < static_cast<double>(most)) frames = static_cast<std::uint64_t>(periods);
    frames = std::min(std::max(frames, least), most);
    return std::min(frames, audioFrameCount(view));
}

}  // namespace

std::uint64_t audioFrameCount(const TrackAudioView& view) {
    return view.channels == 0 ? 0 : view.sampleCount / view.channels;
}

double audioSampleAt(const TrackAudioView& view, std::uint64_t frame, std::uint16_t channel) {
    if (!view.samples || channel >= view.channels || frame >= audioFrameCount(view)) return 0.0;
    return view.samples[frame * view.channels + channel] * sampleScale;
}

double frequencyStrengthInWindow(const TrackAudioView& view, double frequency, std::uint64_t startFrame,
                                 std::uint64_t endFrame) {
    if (!(frequency > 0) || view.sampleRate == 0 || !view.samples) return 0.0;
    if (startFrame >= endFrame || endFrame - startFrame <= longestSilentWindow) return 0.0;
    const double step = frequency * fullTurn / view.sampleRate;
    const Rotation turn{kelmora::cosineOf(step), kelmora::sineOf(step)};
    double strongest = 0;
    for (std::size_t channel = 0; channel < view.channels; ++channel) {
        const ChannelWindow window{
            view.samples + static_cast<std::size_t>(startFrame) * view.channels + channel, view.channels,
            static_cast<std::size_t>(endFrame - startFrame)};
        strongest = std::max(strongest, strengthOf(window, turn));
    }
    return strongest;
}

double strongestFrequencyMatch(const TrackAudioView& view, double frequency, double tolerance,
                               std::uint64_t startFrame, std::uint64_t endFrame) {
    double strongest = frequencyStrengthInWindow(view, frequency, startFrame, endFrame);
    if (!(tolerance > 0)) return strongest;
    for (const double other : {frequency - tolerance, frequency - tolerance / 2, frequency + tolerance / 2,
                               frequency + tolerance}) {
        if (other > 0 && other < view.sampleRate / 2.0)
            strongest = std::max(strongest, frequencyStrengthInWindow(view, other, startFrame, endFrame));
    }
    return strongest;
}

std::vector<FrequencyMatch> findFrequencyMatches(const TrackAudioView& view, double frequency,
                                                 double tolerance, std::uint64_t minimumFrames,
                                                 double threshold) {
    std::vector<FrequencyMatch> matches;
    const std::uint64_t frames = audioFrameCount(view);
    const std::uint64_t window = windowFrames(view, frequency);
    if (window <= longestSilentWindow) return matches;
    const std::uint64_t hop = std::max<std::uint64_t>(window / 4, 1);
    FrequencyMatch run;
    const auto endRun = [&] {
        if (run.end > run.start && run.end - run.start >= minimumFrames) matches.push_back(run);
        run = {};
    };
    for (std::uint64_t start = 0; start + window <= frames; start += hop) {
        if (strongestFrequencyMatch(view, frequency, tolerance, start, start + window) >= threshold) {
            if (run.end == 0) run.start = start;
            run.end = start + window;
        } else {
            endRun();
        }
    }
    endRun();
    return matches;
}

}  // namespace vesper::audio
