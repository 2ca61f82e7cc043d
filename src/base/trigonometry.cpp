#include "base/trigonometry.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace kelmora {
namespace {

// 2/pi as a binary fraction, 32 bits a word; enough for the largest double.
constexpr std::uint32_t twoOverPi[] = {
    0xa2f9836eu, 0x4e441529u, 0xfc2757d1u, 0xf534ddc0u, 0xdb629599u, 0x3c439041u, 0xfe5163abu, 0xdebbc561u,
    0xb7246e3au, 0x424dd2e0u, 0x06492eeau, 0x09d1921cu, 0xfe1deb1cu, 0xb129a73eu, 0xe88235f5u, 0x2ebb4484u,
    0xe99c7026u, 0xb45f7e41u, 0x3991d639u, 0x835339f4u, 0x9c845f8bu, 0xbdf9283bu, 0x1ff897ffu, 0xde05980fu,
    0xef2f118bu, 0x5a0a6d1fu, 0x6d367ecfu, 0x27cb09b7u, 0x4f463f66u, 0x9e5fea2du, 0x7527bac7u, 0xebe5f17bu,
    0x3d0739f7u, 0x8a5292eau, 0x6bfb5fb1u, 0x1f8d5d08u, 0x56033046u, 0xfc7b6babu, 0xf0cfbc20u};
constexpr std::size_t windowWords = 6;

constexpr double halfPi = 0x1.921fb54442d18p+0;

// An angle as `quarter` quarter turns and a rest between -pi/4 and pi/4.
struct Reduced {
    int quarter;
    double rest;
};

// pi/2 in three parts. A product of the first two with less than 2^20 has no rounding.
Reduced reduceSmall(double angle) {
    const double turns = std::floor(angle * 0x1.45f306dc9c883p-1 + 0.5);
    const double rest =
        angle - turns * 0x1.921fb544p+0 - turns * 0x1.0b4611a6p-34 - turns * 0x1.3198a2e037073p-69;
    return {static_cast<int>(turns) & 3, rest};
}

// The product of a 53-bit number with six words of 2/pi, lowest word first.
class WindowProduct {
public:
    WindowProduct(std::uint64_t number, std::size_t firstWord) {
        for (std::size_t i = 0; i < windowWords; ++i) {
            const std::uint64_t word = twoOverPi[firstWord + windowWords - 1 - i];
            add(i, word * (number & 0xffffffffu));
            add(i + 1, word * (number >> 32));
        }
    }
    // 64 bits from a place on.
    std::uint64_t bitsFrom(std::size_t place) const {
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < 64; ++i) bits |= bit(place + i) << i;
        return bits;
    }

private:
    void add(std::size_t at, std::uint64_t value) {
        for (std::uint64_t carry = 0; at < words_.size(); ++at) {
            carry += words_[at] + (value & 0xffffffffu);
            words_[at] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
            value >>= 32;
        }
    }
    std::uint64_t bit(std::size_t place) const {
        return place / 32 < words_.size() ? words_[place / 32] >> place % 32 & 1u : 0;
    }

    std::array<std::uint32_t, windowWords + 3> words_{};
};

// Takes the part of 2/pi that decides: the words before it only add whole turns, those behind it too little.
Reduced reduceLarge(double angle) {
    int exponent = 0;
    const double fraction = std::frexp(angle, &exponent);
    exponent -= 53;
    const auto number = static_cast<std::uint64_t>(std::ldexp(fraction, 53));
    const std::size_t firstWord = exponent < 2 ? 0 : static_cast<std::size_t>(exponent - 2) / 32;
    const WindowProduct product(number, firstWord);
    const auto point = static_cast<std::size_t>(static_cast<int>(32 * (firstWord + windowWords)) - exponent);
    const std::uint64_t high = product.bitsFrom(point - 64);
    const std::uint64_t low = product.bitsFrom(point - 128);
    const bool up = high >> 63 != 0;
    const double rest = std::ldexp(static_cast<double>(static_cast<std::int64_t>(high)), -64) +
                        std::ldexp(static_cast<double>(low), -128);
    return {static_cast<int>(product.bitsFrom(point) + (up ? 1 : 0)) & 3, rest * halfPi};
}

Reduced reduce(double angle) {
    constexpr double largestSmall = 1 << 20;
    if (std::fabs(angle) <= largestSmall) return reduceSmall(angle);
    if (angle > 0) return reduceLarge(angle);
    const Reduced mirrored = reduceLarge(-angle);
    return {-mirrored.quarter & 3, -mirrored.rest};
}

// Power series; the first term left out is below the last bit.
double sineOfRest(double x) {
    const double y = x * x;
    double sum = 1.0 / 355687428096000.0;
    for (const double factorial :
         {-1307674368000.0, 6227020800.0, -39916800.0, 362880.0, -5040.0, 120.0, -6.0})
        sum = sum * y + 1.0 / factorial;
    return x + x * (y * sum);
}

double cosineOfRest(double x) {
    const double y = x * x;
    double sum = 1.0 / 20922789888000.0;
    for (const double factorial : {-87178291200.0, 479001600.0, -3628800.0, 40320.0, -720.0, 24.0, -2.0})
        sum = sum * y + 1.0 / factorial;
    return 1.0 + y * sum;
}

double sineFrom(Reduced reduced) {
    const double value = reduced.quarter % 2 == 0 ? sineOfRest(reduced.rest) : cosineOfRest(reduced.rest);
    return reduced.quarter < 2 ? value : -value;
}

}  // namespace

double sineOf(double angle) {
    if (!std::isfinite(angle)) return std::numeric_limits<double>::quiet_NaN();
    return sineFrom(reduce(angle));
}

double cosineOf(double angle) {
    if (!std::isfinite(angle)) return std::numeric_limits<double>::quiet_NaN();
    const Reduced reduced = reduce(angle);
    return sineFrom({(reduced.quarter + 1) & 3, reduced.rest});
}

}  // namespace kelmora
