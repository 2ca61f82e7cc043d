#pragma once

#include <cstdint>
#include <unordered_set>

#include "image/pixel_memory.h"
#include "image/plush_image.h"

namespace kelmora {

// Every image that scripts hold. An image enters when a script gets it and leaves only when it is killed;
// nothing else frees it, not even the end of the process.
extern std::unordered_set<PlushImage*>& livePlushImages;

// No picture that scripts make is larger.
constexpr std::int64_t maximumPixels = std::int64_t{1} << 28;

// True for a registered image whose record is sound. A registered record that is not gets its size and
// pixels zeroed.
bool cleanImage(PlushImage* image);

// The four bytes at (x, y); one shared clear pixel where there is nothing to read.
const unsigned char* getPixel(const PlushImage* image, int x, int y);
// Does nothing outside the image.
void setPixel(PlushImage* image, int x, int y, unsigned char r, unsigned char g, unsigned char b,
              unsigned char a);

// A registered image of one colour, each side at least 1.
PlushImage* createSolidColourImage(int width, int height, unsigned char r, unsigned char g, unsigned char b,
                                   unsigned char a);
// Registers an image around pixels.
PlushImage* adoptPixels(PixelMemory pixels, int width, int height);
// Frees a registered image; anything else is left alone.
void killPlushImage(PlushImage* image);

// Mirrors in place: left to right, or top to bottom.
void mirrorPlushImage(PlushImage* image, bool horizontal);
// Replaces the image's reflection map by a copy of the other's picture. Both have pixels.
void insertReflection(PlushImage& image, const PlushImage& map);

}  // namespace kelmora
