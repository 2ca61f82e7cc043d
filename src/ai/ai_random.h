#pragma once

#include <cstdint>
#include <mutex>
#include <random>

namespace kelmora {

// A generator that threads share: each draw is one whole step of it.
class AIRandom {
public:
    explicit AIRandom(std::uint32_t seed) : engine_(seed) {}

    // From 0 to below `count`, which is not 0.
    std::uint32_t below(std::uint32_t count);
    // In [0, 1), from 64 bits.
    double unit();

private:
    std::mutex mutex_;
    std::mt19937 engine_;
};

// The process's own, seeded by the system when it is first used.
AIRandom& aiRng();

}  // namespace kelmora
