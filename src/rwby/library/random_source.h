#pragma once

#include <cstdint>
#include <random>

namespace vesper::ruby {

// Draws that are the same on every target. Each machine has its own.
class RandomSource {
public:
    RandomSource() : engine_(std::random_device{}()) {}

    void seed(std::int64_t value);
    // From 0 up to but without 1.
    double draw();
    // Both ends included; the lower one comes first.
    std::int64_t drawBetween(std::int64_t lowest, std::int64_t highest);

private:
    std::mt19937_64 engine_;
};

}  // namespace vesper::ruby
