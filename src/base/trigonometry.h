#pragma once

namespace kelmora {

// Sine and cosine with the same bits on every target, to about a unit in the last place, for any argument;
// that of an infinity or NaN is NaN. The C libraries' own differ, by a bit on a hundredth of all floats and
// altogether on large arguments, and scripts and pictures would show it. Pass floats too through these and
// narrow the result.
double sineOf(double angle);
double cosineOf(double angle);

}  // namespace kelmora
