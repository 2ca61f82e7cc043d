#pragma once

#include <cstdint>

#include "audio/track.h"

// Edits are whole and immediate. False, with the track as it was, for anything that is no open track, for
// arguments out of range, and for a result that cannot be held in memory. After an edit the track stands
// still at its beginning; a call that is true but had nothing to change leaves it playing.
namespace vesper::audio {

// A new track with a tone; null for a negative number, an unknown shape ("square", "sine", "saw") or side
// ("left", "right", "both"), and a length that cannot be held.
Track* form(int frequency, int lengthMs, const char* shape, const char* side);

// Mixes the source into the target, which keeps its length. Both are stereo.
bool add(Track* target, const Track* source, long long offsetMs);
// Keeps what lies between the two offsets.
bool trim(Track* track, long long startMs, long long endMs);
// Both play the material `factor` times as fast; `pitch` keeps the track's length, silent where the material
// has ended.
bool pitch(Track* track, double factor);
bool speed(Track* track, double factor);

}  // namespace vesper::audio
