#include "audio/volume.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>

namespace vesper::mixer {
namespace {

constexpr std::int32_t fullGain = 65536;
// A sudden step is heard as a click.
constexpr std::uint64_t stepFrames = 512;

std::int32_t gainOf(double volume) {
    return volume > 0 ? static_cast<std::int32_t>(std::lround(std::min(volume, 1.0) * fullGain)) : 0;
}

std::atomic<std::int32_t> masterGain = fullGain;
std::array<std::atomic<std::int32_t>, 2> groupGains = {fullGain, fullGain};

std::int32_t product(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(std::int64_t{a} * b / fullGain);
}

std::int32_t sharedGain(Group group) {
    return product(masterGain, groupGains[static_cast<std::size_t>(group)]);
}

std::int16_t scaled(std::int16_t sample, std::int32_t gain) {
    return static_cast<std::int16_t>((std::int64_t{sample} * gain + fullGain / 2) >> 16);
}

}  // namespace

void setMasterVolume(double volume) {
    masterGain = gainOf(volume);
}

void setGroupVolume(Group group, double volume) {
    groupGains[static_cast<std::size_t>(group)] = gainOf(volume);
}

std::int32_t TrackVolume::Ramp::gain() const {
    if (done >= frames) return to;
    const auto whole = static_cast<std::int64_t>(frames);
    return static_cast<std::int32_t>(from +
                                     (std::int64_t{to} - from) * static_cast<std::int64_t>(done) / whole);
}

void TrackVolume::set(double volume) {
    const std::lock_guard lock(mutex_);
    ramp_ = {ramp_.gain(), gainOf(volume), stepFrames, 0};
    isStep_ = true;
}

void TrackVolume::fade(double to, std::uint64_t frames) {
    constexpr std::uint64_t longest = std::uint64_t{1} << 40;
    const std::lock_guard lock(mutex_);
    if (isStep_) ramp_.done = ramp_.frames;  // what was set before is where it starts
    ramp_ = {ramp_.gain(), gainOf(to), std::min(frames, longest), 0};
    isStep_ = false;
}

void TrackVolume::setGroup(Group group) {
    const std::lock_guard lock(mutex_);
    group_ = group;
}

double TrackVolume::volume() const {
    const std::lock_guard lock(mutex_);
    return static_cast<double>(isStep_ ? ramp_.to : ramp_.gain()) / full;
}

void TrackVolume::begin() {
    const std::lock_guard lock(mutex_);
    if (isStep_) ramp_.done = ramp_.frames;
    sharedGain_ = sharedGain(group_);
}

void TrackVolume::apply(std::span<std::int16_t> samples) {
    const std::lock_guard lock(mutex_);
    const std::int32_t before = sharedGain_;
    sharedGain_ = sharedGain(group_);
    const bool rests = ramp_.done >= ramp_.frames && before == sharedGain_;
    if (rests && ramp_.to == full && sharedGain_ == full) return;
    const auto count = static_cast<std::int64_t>(samples.size() / 2);
    for (std::int64_t frame = 0; frame < count; ++frame) {
        const auto shared =
            static_cast<std::int32_t>(before + (std::int64_t{sharedGain_} - before) * (frame + 1) / count);
        const std::int32_t gain = product(ramp_.gain(), shared);
        if (ramp_.done < ramp_.frames) ++ramp_.done;
        const auto at = static_cast<std::size_t>(frame) * 2;
        samples[at] = scaled(samples[at], gain);
        samples[at + 1] = scaled(samples[at + 1], gain);
    }
}

}  // namespace vesper::mixer
