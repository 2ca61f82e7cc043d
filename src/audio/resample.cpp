#include "audio/resample.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "audio/sample_math.h"

namespace vesper::audio {
namespace {

// Where an output frame falls in the source. Worked out from its number each time, so that errors do not add
// up.
class Position {
public:
    Position(double step, std::uint32_t frame, std::size_t channels)
        : place_(step * frame), channels_(channels) {}

    bool isBefore(std::size_t frames) const { return place_ < static_cast<double>(frames); }
    // Only for a position before `frames`, the source's count.
    void settle(std::size_t frames) {
        const auto base = static_cast<std::size_t>(static_cast<std::int64_t>(place_));
        rest_ = place_ - static_cast<double>(base);
        first_ = base * channels_;
        second_ = std::min(base + 1, frames - 1) * channels_;
    }
    double sample(const std::int16_t* samples, std::size_t channel) const {
        const double a = samples[first_ + channel];
        const double b = samples[second_ + channel];
        return a + (b - a) * rest_;
    }

private:
    double place_;
    double rest_ = 0;
    std::size_t channels_;
    std::size_t first_ = 0;
    std::size_t second_ = 0;
};

std::size_t frameCount(const wav::DecodedFile& sound) {
    return sound.samples.size() / sound.channels;
}

}  // namespace

wav::DecodedFile resample(const wav::DecodedFile& source, std::uint32_t frames, double step) {
    wav::DecodedFile result;
    result.sampleRate = source.sampleRate;
    result.channels = source.channels;
    result.samples.resize(std::size_t{frames} * source.channels);
    if (!(step > 0) || source.channels == 0 || source.sampleRate == 0) return result;
    const std::size_t channels = source.channels;
    const std::size_t sourceFrames = frameCount(source);
    std::int16_t* out = result.samples.data();
    for (std::uint32_t i = 0; i < frames; ++i, out += channels) {
        Position position(step, i, channels);
        if (!position.isBefore(sourceFrames)) break;
        position.settle(sourceFrames);
        for (std::size_t channel = 0; channel < channels; ++channel)
            out[channel] = storedSample(position.sample(source.samples.data(), channel));
    }
    return result;
}

void mixInto(wav::DecodedFile& target, const wav::DecodedFile& source, std::uint32_t offsetFrames) {
    constexpr std::size_t stereo = 2;
    const std::size_t sourceFrames = frameCount(source);
    const std::size_t targetFrames = frameCount(target);
    if (offsetFrames >= targetFrames) return;
    const double step = static_cast<double>(source.sampleRate) / target.sampleRate;
    const double wanted = std::ceil(static_cast<double>(sourceFrames) / step);
    const std::size_t room = targetFrames - offsetFrames;
    const std::size_t count = wanted < static_cast<double>(room) ? static_cast<std::size_t>(wanted) : room;
    std::int16_t* out = target.samples.data() + offsetFrames * stereo;
    for (std::size_t i = 0; i < count; ++i, out += stereo) {
        Position position(step, static_cast<std::uint32_t>(i), stereo);
        if (!position.isBefore(sourceFrames)) break;
        position.settle(sourceFrames);
        for (std::size_t channel = 0; channel < stereo; ++channel)
            out[channel] = storedSample(out[channel] + position.sample(source.samples.data(), channel));
    }
}

}  // namespace vesper::audio
