#include "plush/image_processing.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "image/image_registry.h"
#include "image/row_workers.h"

namespace kelmora {
namespace {

std::size_t byteCount(std::int32_t width, std::int32_t height) {
    return std::size_t{4} * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

unsigned char* rowOf(const PlushImage& image, std::int32_t y) {
    return image.pixels + byteCount(image.width, y);
}

void replacePixels(PlushImage& image, PixelMemory pixels, std::int32_t width, std::int32_t height) {
    releasePixels(image.pixels);
    image.pixels = pixels.release();
    image.width = width;
    image.height = height;
}

// What work on each pixel with its neighbours costs, about.
std::int64_t nanosecondsOf(const PlushImage& image) {
    return std::int64_t{image.width} * image.height * 10;
}

// Thresholds of an 8 x 8 square in which neighbours differ most, 0 to 63.
constexpr std::array<std::array<int, 8>, 8> thresholds = [] {
    std::array<std::array<int, 8>, 8> table{};
    for (unsigned y = 0; y < 8; ++y)
        for (unsigned x = 0; x < 8; ++x)
            for (unsigned bit = 0; bit < 3; ++bit) {
                const unsigned column = x >> bit & 1u;
                const unsigned row = y >> bit & 1u;
                table[y][x] += static_cast<int>(((column ^ row) << 1 | row) << (4 - 2 * bit));
            }
    return table;
}();

unsigned char dithered(int value, int step, int threshold) {
    const int low = value / step * step;
    const int high = std::min(low + step, 255);
    // The share of pixels that go up is the value's place between the two.
    return static_cast<unsigned char>((value - low) * 128 > (2 * threshold + 1) * (high - low) ? high : low);
}

// Sums of three or nine pixels, colours weighed by alpha.
struct WeighedSum {
    std::uint32_t weight = 0;
    std::uint32_t alpha = 0;
    std::uint32_t colour[3] = {};

    void add(const unsigned char* pixel, std::uint32_t times) {
        const std::uint32_t opacity = pixel[3] * times;
        weight += times;
        alpha += opacity;
        for (int channel = 0; channel < 3; ++channel) colour[channel] += pixel[channel] * opacity;
    }
};

void smoothPixel(unsigned char* target, const WeighedSum& sum, EdgeForm edges) {
    if (sum.alpha != 0)
        for (int channel = 0; channel < 3; ++channel)
            target[channel] = static_cast<unsigned char>((sum.colour[channel] + sum.alpha / 2) / sum.alpha);
    if (edges == EdgeForm::Soft)
        target[3] = static_cast<unsigned char>((sum.alpha + sum.weight / 2) / sum.weight);
}

}  // namespace

void ditherImage(PlushImage& image, std::int32_t amount, bool doubleFirst, std::int32_t workers) {
    if (doubleFirst) upscalePlushImage(image, 2, workers);
    if (amount < 1) return;
    const int step = std::min(amount, 255);
    runRows({image.height, workers, nanosecondsOf(image), true}, [&](std::int32_t first, std::int32_t last) {
        for (std::int32_t y = first; y < last; ++y) {
            unsigned char* pixel = rowOf(image, y);
            for (std::int32_t x = 0; x < image.width; ++x, pixel += 4)
                for (int channel = 0; channel < 3; ++channel)
                    pixel[channel] = dithered(
                        pixel[channel], step,
                        thresholds[static_cast<std::size_t>(y % 8)][static_cast<std::size_t>(x % 8)]);
        }
    });
}

void bilinearInPlace(PlushImage& image, EdgeForm edges, std::int32_t workers) {
    const std::size_t size = byteCount(image.width, image.height);
    PixelMemory smoothed = allocatePixels(size);
    std::memcpy(smoothed.get(), image.pixels, size);
    runRows({image.height, workers, nanosecondsOf(image), true}, [&](std::int32_t first, std::int32_t last) {
        for (std::int32_t y = first; y < last; ++y) {
            const unsigned char* const rows[] = {rowOf(image, std::max(y - 1, 0)), rowOf(image, y),
                                                 rowOf(image, std::min(y + 1, image.height - 1))};
            for (std::int32_t x = 0; x < image.width; ++x) {
                const std::int32_t columns[] = {std::max(x - 1, 0), x, std::min(x + 1, image.width - 1)};
                constexpr std::uint32_t weights[] = {1, 2, 1};
                WeighedSum sum;
                for (int row = 0; row < 3; ++row)
                    for (int column = 0; column < 3; ++column)
                        sum.add(rows[row] + byteCount(columns[column], 1), weights[row] * weights[column]);
                smoothPixel(smoothed.get() + byteCount(image.width, y) + byteCount(x, 1), sum, edges);
            }
        }
    });
    replacePixels(image, std::move(smoothed), image.width, image.height);
}

bool fitsEnlarged(const PlushImage& image, double factor) {
    return !(factor > 1) ||
           image.width * factor * (image.height * factor) <= static_cast<double>(maximumPixels);
}

void upscalePlushImage(PlushImage& image, double factor, std::int32_t workers) {
    if (!(factor > 1) || !fitsEnlarged(image, factor)) return;
    const auto width = static_cast<std::int32_t>(image.width * factor);
    const auto height = static_cast<std::int32_t>(image.height * factor);
    PixelMemory pixels = allocatePixels(byteCount(width, height));
    const auto nearest = [](std::int32_t at, std::int32_t count, std::int32_t of) {
        return static_cast<std::int32_t>(std::int64_t{at} * of / count);
    };
    runRows({height, workers, std::int64_t{width} * height, true},
            [&](std::int32_t first, std::int32_t last) {
                for (std::int32_t y = first; y < last; ++y) {
                    const unsigned char* source = rowOf(image, nearest(y, height, image.height));
                    unsigned char* target = pixels.get() + byteCount(width, y);
                    for (std::int32_t x = 0; x < width; ++x)
                        std::memcpy(target + byteCount(x, 1),
                                    source + byteCount(nearest(x, width, image.width), 1), 4);
                }
            });
    replacePixels(image, std::move(pixels), width, height);
}

void trimPlushImage(PlushImage& image, std::int32_t width, std::int32_t height) {
    if (width <= 0 || height <= 0 || width > image.width || height > image.height) return;
    if (width == image.width && height == image.height) return;
    PixelMemory pixels = allocatePixels(byteCount(width, height));
    for (std::int32_t y = 0; y < height; ++y)
        std::memcpy(pixels.get() + byteCount(width, y), rowOf(image, y), byteCount(width, 1));
    replacePixels(image, std::move(pixels), width, height);
}

}  // namespace kelmora
