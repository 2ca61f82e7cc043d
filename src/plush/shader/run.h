#pragma once

#include "plush/shader/machine.h"

namespace kelmora::plush_shader {

// Runs the program over a picture in place. Samples read the picture as it was before.
void run(const Program& program, unsigned char* pixels, int width, int height, const Uniforms& uniforms,
         const Environment& environment);

// Runs the program over the nearest source pixel of each target pixel; x and y are fractional, in the
// source's coordinates. Channels that the program does not write are the source's. Does nothing when both are
// one buffer.
void render(const Program& program, const unsigned char* source, int sourceWidth, int sourceHeight,
            unsigned char* target, int targetWidth, int targetHeight, const Uniforms& uniforms,
            const Environment& environment);

// For tests and measurements: which machine runs programs. Both give the same bytes; the batched one is only
// used for programs that it can run.
enum class Machine { Fastest, Plain, Batched };
void useMachine(Machine machine);

}  // namespace kelmora::plush_shader
