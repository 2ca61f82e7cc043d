#include "audio/sample_math.h"

#include <cmath>

namespace vesper::audio {

std::uint32_t framesOfMilliseconds(double milliseconds, std::uint32_t sampleRate) {
    const double frames = milliseconds * sampleRate / 1000.0;
    if (!(frames < static_cast<double>(farthestFrame))) return farthestFrame;
    return static_cast<std::uint32_t>(std::llround(frames));
}

}  // namespace vesper::audio
