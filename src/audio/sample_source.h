#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace vesper::mixer {

// Where a player's stereo frames come from. One thread at a time reads.
class SampleSource {
public:
    SampleSource() = default;
    SampleSource(const SampleSource&) = delete;
    SampleSource& operator=(const SampleSource&) = delete;
    virtual ~SampleSource() = default;

    virtual std::uint64_t frames() const = 0;
    // The frames from `frame` on, as many as `out` has room for; they all exist.
    virtual void read(std::uint64_t frame, std::span<std::int16_t> out) = 0;
};

// Samples in memory.
class PcmSource : public SampleSource {
public:
    explicit PcmSource(std::vector<std::int16_t> samples) : samples_(std::move(samples)) {}

    std::uint64_t frames() const override { return samples_.size() / 2; }
    void read(std::uint64_t frame, std::span<std::int16_t> out) override {
        std::copy_n(samples_.begin() + static_cast<std::ptrdiff_t>(frame * 2), out.size(), out.begin());
    }

private:
    std::vector<std::int16_t> samples_;
};

}  // namespace vesper::mixer
