#pragma once

#include <cstdint>
#include <memory>

#include "audio/sample_source.h"
#include "audio/volume.h"

// Plays tracks. Each playing track has an output device and a feeder thread of its own; the system adds the
// streams. Handles are opaque: an unknown or null one is accepted everywhere and does nothing. One thread at
// a time may call for a handle.
namespace vesper::mixer {

// Copies the samples. Null for anything but whole frames of stereo at a rate that is not 0, and where there
// is no room for a copy.
void* OpenPCMTrack(const std::int16_t* samples, std::uint64_t sampleCount, std::uint32_t sampleRate,
                   std::uint16_t channels);
// Null for no source, an empty one, or a rate of 0.
void* OpenSource(std::unique_ptr<SampleSource> source, std::uint32_t sampleRate);
// From the beginning again if the track plays. False for an unknown handle and when no device can be had.
bool Play(void* handle, std::uint64_t offsetMs, bool loop);
// From now on the player follows this volume, which is not null. It stands still.
void UseVolume(void* handle, std::shared_ptr<TrackVolume> volume);
// The offset at which the track stopped, in milliseconds; 0 if it had played to its end.
std::uint64_t Stop(void* handle);
std::uint64_t GetCurrentOffset(void* handle);
void StopAll();
// Stops the track and gives up the handle.
void Close(void* handle);

}  // namespace vesper::mixer
