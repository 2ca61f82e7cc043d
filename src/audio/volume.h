#pragma once

#include <cstdint>
#include <mutex>
#include <span>

// How loud tracks play. Volumes go from 0 to 1 and are held to that.
namespace vesper::mixer {

enum class Group : std::uint8_t { music, sound };

// Of all tracks, and of all tracks of a group. Any thread may call.
void setMasterVolume(double volume);
void setGroupVolume(Group group, double volume);

// One track's volume, which its player follows while it feeds. Any thread may call.
class TrackVolume {
public:
    void set(double volume);
    // From what it is now, evenly over so many frames of the track; it begins with the next frame that is fed
    // and rests while the track stands.
    void fade(double to, std::uint64_t frames);
    void setGroup(Group group);
    // What the next frame is fed with, without the shared volumes.
    double volume() const;

    // Playing begins: what was set since is no step that could be heard.
    void begin();
    // Stereo samples, which stay exactly what they are while everything is at its full volume.
    void apply(std::span<std::int16_t> samples);

private:
    // Gains are 65536ths, so that full volume is a whole number.
    struct Ramp {
        std::int32_t from;
        std::int32_t to;
        std::uint64_t frames;
        std::uint64_t done;

        std::int32_t gain() const;
    };
    static constexpr std::int32_t full = 65536;

    mutable std::mutex mutex_;
    Ramp ramp_{full, full, 0, 0};
    bool isStep_ = true;  // not a fade
    Group group_ = Group::sound;
    std::int32_t sharedGain_ = full;  // that the last frame was fed with
};

}  // namespace vesper::mixer
