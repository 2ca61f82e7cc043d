#pragma once

namespace kelmora {

// How much each colour adds to three times a pixel's grey. The second factors are tuned by eye.
struct GreyWeights {
    float r = 0.55f * 1.0f;
    float g = 0.65f * 1.457f;
    float b = 0.475f * 2.0f;
};

inline constexpr GreyWeights greyWeights{};

}  // namespace kelmora
