#pragma once

#include <cmath>
#include <cstdint>

#include "base/trigonometry.h"

// What the instructions compute, for one value. Every machine gives these bits.
namespace kelmora::plush_shader::arithmetic {

inline float truth(bool value) {
    return value ? 1.0f : 0.0f;
}
inline float modulo(float a, float b) {
    return b == 0 ? 0.0f : a - std::floor(a / b) * b;
}
// The library's functions of floats differ between targets in their last bit; those of doubles do so too
// rarely to be seen once they are narrowed, but for sine and cosine.
inline float sine(float a) {
    return static_cast<float>(sineOf(static_cast<double>(a)));
}
inline float cosine(float a) {
    return static_cast<float>(cosineOf(static_cast<double>(a)));
}
inline float tangent(float a) {
    return static_cast<float>(sineOf(static_cast<double>(a)) / cosineOf(static_cast<double>(a)));
}
inline float arcTangent(float a) {
    return static_cast<float>(std::atan(static_cast<double>(a)));
}
inline float angle(float a, float b) {
    return static_cast<float>(std::atan2(static_cast<double>(a), static_cast<double>(b)));
}
inline float logarithm(float a) {
    return static_cast<float>(std::log(static_cast<double>(a)));
}
inline float power(float a, float b) {
    return static_cast<float>(std::pow(static_cast<double>(a), static_cast<double>(b)));
}
inline float exponential(float a) {
    return static_cast<float>(std::exp(static_cast<double>(a)));
}
inline float fraction(float a) {
    return a - std::floor(a);
}
inline float sign(float a) {
    return truth(a > 0) - truth(a < 0);
}
inline float minimum(float a, float b) {
    return a < b ? a : b;
}
inline float maximum(float a, float b) {
    return a > b ? a : b;
}
inline float step(float edge, float a) {
    return truth(!(a < edge));
}
inline float clamp(float a, float low, float high) {
    return a < low ? low : a > high ? high : a;
}
inline float mix(float a, float b, float c) {
    return a + (b - a) * c;
}
inline float smoothstep(float low, float high, float a) {
    const float t = clamp((a - low) / (high - low), 0, 1);
    return t * t * (3 - 2 * t);
}

// A channel's value as a shader sees it, and back: cut to 0 to 1, NaN is 0.
inline float channelValue(unsigned char byte) {
    return static_cast<float>(byte) / 255.0f;
}
inline unsigned char channelByte(float value) {
    if (!(value >= 0)) return 0;
    return value >= 1 ? 255 : static_cast<unsigned char>(value * 255.0f);
}

}  // namespace kelmora::plush_shader::arithmetic
