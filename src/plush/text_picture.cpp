#include "plush/text_picture.h"

#include <algorithm>
#include <array>

namespace kelmora {
namespace {

constexpr std::int32_t mostCharacters = 1000;
// Pixels that are looked at along each side of an area.
constexpr std::int64_t samplesPerSide = 16;

using Colour = std::array<std::uint64_t, 3>;

struct Range {
    std::int64_t first;
    std::int64_t last;
    std::int64_t step() const { return (last - first + samplesPerSide - 1) / samplesPerSide; }
};

Range shareOf(std::int32_t pixels, std::int32_t index, std::int32_t count) {
    const std::int64_t first = std::int64_t{pixels} * index / count;
    const std::int64_t last = std::int64_t{pixels} * (index + 1) / count;
    return {first, std::max(last, first + 1)};
}

// Mean of an area, each channel 0 to 255.
Colour meanOf(const PlushImage& image, Range across, Range down) {
    Colour sum{};
    std::uint64_t count = 0;
    for (std::int64_t y = down.first; y < down.last; y += down.step())
        for (std::int64_t x = across.first; x < across.last; x += across.step(), ++count) {
            const unsigned char* pixel = image.pixels + (y * image.width + x) * 4;
            for (std::size_t channel = 0; channel < 3; ++channel)
                sum[channel] += std::uint64_t{pixel[channel]} * pixel[3];
        }
    for (std::uint64_t& channel : sum) channel /= count * 255;
    return sum;
}

char characterFor(const Colour& colour) {
    constexpr std::string_view ramp = " .:-=+*#%@";
    const std::uint64_t brightness = (colour[0] * 54 + colour[1] * 183 + colour[2] * 19) / 256;
    return ramp[static_cast<std::size_t>(brightness) * ramp.size() / 256];
}

void appendColour(std::string& text, const char* ground, const Colour& colour) {
    text += ground;
    for (const std::uint64_t channel : colour) text += ";" + std::to_string(channel);
    text += 'm';
}

}  // namespace

std::string textPicture(const PlushImage& image, std::int32_t columns, std::int32_t rows, TextForm form) {
    columns = std::min(columns, mostCharacters);
    rows = std::min(rows, mostCharacters);
    std::string text;
    if (columns < 1 || rows < 1) return text;
    for (std::int32_t row = 0; row < rows; ++row) {
        for (std::int32_t column = 0; column < columns; ++column) {
            const Range across = shareOf(image.width, column, columns);
            if (form == TextForm::Characters) {
                text += characterFor(meanOf(image, across, shareOf(image.height, row, rows)));
                continue;
            }
            appendColour(text, "\x1b[38;2", meanOf(image, across, shareOf(image.height, row * 2, rows * 2)));
            appendColour(text, "\x1b[48;2",
                         meanOf(image, across, shareOf(image.height, row * 2 + 1, rows * 2)));
            text += "\u2580";
        }
        text += form == TextForm::TrueColour ? "\x1b[0m\n" : "\n";
    }
    return text;
}

}  // namespace kelmora
