#include "image/image_registry.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <vector>

namespace kelmora {

std::unordered_set<PlushImage*>& livePlushImages = *new std::unordered_set<PlushImage*>;

namespace {

constexpr std::array<unsigned char, 4> zeroPixel{};

std::size_t byteCount(std::int32_t width, std::int32_t height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
}

bool holds(const PlushImage* image, int x, int y) {
    return image && image->pixels && x >= 0 && y >= 0 && x < image->width && y < image->height;
}

std::size_t offsetOf(const PlushImage& image, int x, int y) {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
            static_cast<std::size_t>(x)) *
           4;
}

void reverseRow(unsigned char* row, std::size_t width) {
    for (std::size_t left = 0, right = width - 1; left < right; ++left, --right)
        std::swap_ranges(row + left * 4, row + left * 4 + 4, row + right * 4);
}

}  // namespace

bool cleanImage(PlushImage* image) {
    if (!image || !livePlushImages.contains(image)) return false;
    const bool empty = image->width == 0 && image->height == 0;
    const bool filled = image->width > 0 && image->height > 0 && image->pixels;
    if (empty || filled) return true;
    image->width = 0;
    image->height = 0;
    image->pixels = nullptr;
    return false;
}

const unsigned char* getPixel(const PlushImage* image, int x, int y) {
    return holds(image, x, y) ? image->pixels + offsetOf(*image, x, y) : zeroPixel.data();
}

void setPixel(PlushImage* image, int x, int y, unsigned char r, unsigned char g, unsigned char b,
              unsigned char a) {
    if (!holds(image, x, y)) return;
    unsigned char* pixel = image->pixels + offsetOf(*image, x, y);
    pixel[0] = r;
    pixel[1] = g;
    pixel[2] = b;
    pixel[3] = a;
}

PlushImage* adoptPixels(PixelMemory pixels, int width, int height) {
    auto image = std::make_unique<PlushImage>();
    image->width = width;
    image->height = height;
    livePlushImages.insert(image.get());
    image->pixels = pixels.release();
    return image.release();
}

PlushImage* createSolidColourImage(int width, int height, unsigned char r, unsigned char g, unsigned char b,
                                   unsigned char a) {
    width = std::max(width, 1);
    height = std::max(height, 1);
    const std::size_t size = byteCount(width, height);
    const std::array<unsigned char, 4> colour{r, g, b, a};
    const bool isClear = colour == zeroPixel;
    PixelMemory pixels = isClear ? allocateClearPixels(size) : allocatePixels(size);
    if (!isClear)
        for (std::size_t i = 0; i < size; i += 4) std::memcpy(pixels.get() + i, colour.data(), 4);
    return adoptPixels(std::move(pixels), width, height);
}

void killPlushImage(PlushImage* image) {
    if (!image || livePlushImages.erase(image) == 0) return;
    releasePixels(image->pixels);
    releasePixels(image->reflectPixels);
    delete image;
}

void mirrorPlushImage(PlushImage* image, bool horizontal) {
    if (!image || !image->pixels || image->width <= 0 || image->height <= 0) return;
    const auto width = static_cast<std::size_t>(image->width);
    const auto height = static_cast<std::size_t>(image->height);
    const std::size_t rowBytes = width * 4;
    if (horizontal) {
        for (std::size_t y = 0; y < height; ++y) reverseRow(image->pixels + y * rowBytes, width);
        return;
    }
    for (std::size_t y = 0; y < height / 2; ++y) {
        unsigned char* top = image->pixels + y * rowBytes;
        std::swap_ranges(top, top + rowBytes, image->pixels + (height - 1 - y) * rowBytes);
    }
}

void insertReflection(PlushImage& image, const PlushImage& map) {
    const std::size_t size = byteCount(map.width, map.height);
    PixelMemory copy = allocatePixels(size);
    std::memcpy(copy.get(), map.pixels, size);
    releasePixels(image.reflectPixels);
    image.reflectWidth = map.width;
    image.reflectHeight = map.height;
    image.reflectPixels = copy.release();
}

}  // namespace kelmora
