// The Vorbis decoder of Debian's package libstb-dev, with our sine and cosine: the C libraries' differ in last
// bits, and a sound is the same bytes on every system.
#include <math.h>

double kelmora_sine(double angle);
double kelmora_cosine(double angle);
#define sin(x) kelmora_sine(x)
#define cos(x) kelmora_cosine(x)

#define STB_VORBIS_NO_STDIO
#define STB_VORBIS_NO_PUSHDATA_API
#include <stb_vorbis.h>
