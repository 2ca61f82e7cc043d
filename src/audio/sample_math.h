#pragma once

#include <cstdint>

namespace vesper::audio {

// Longer tracks are refused, on every system alike: this many samples are 2 GiB.
inline constexpr std::uint64_t largestTrackSamples = (std::uint64_t{1} << 30) - 1;

// Milliseconds as frames, rounded; from here on the most frames that an offset can name.
inline constexpr std::uint32_t farthestFrame = 0x7FFFFFFF;

// Rounded, halves away from zero, as all rounding of tracks; `farthestFrame` and above give that.
// `milliseconds` is not negative.
std::uint32_t framesOfMilliseconds(double milliseconds, std::uint32_t sampleRate);

// The nearest 16-bit sample, halves away from zero. NaN is 0.
inline std::int16_t storedSample(double value) {
    if (value <= -32768.0) return -32768;
    if (value >= 32767.0) return 32767;
    if (value != value) return 0;
    // The part behind the point is exact, so that nothing is rounded twice.
    const auto whole = static_cast<std::int32_t>(value);
    const double rest = value - whole;
    return static_cast<std::int16_t>(whole + (rest >= 0.5 ? 1 : 0) - (rest <= -0.5 ? 1 : 0));
}

}  // namespace vesper::audio
