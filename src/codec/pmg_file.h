#pragma once

#include "image/plush_image.h"

namespace kelmora {

// The engine's own picture file: an image with its reflection map, not compressed. Its only mark is the
// extension, which counts in lower case only.
bool hasPMGExtension(const char* path);

// True when the whole file was written.
[[nodiscard]] bool savePlushImage(const PlushImage* image, const char* path);
// A new registered image, or null.
PlushImage* loadPlushImage(const char* path);

}  // namespace kelmora
