#include "tool/play/overlay.h"

#include <algorithm>

#include "image/image_registry.h"

namespace kelmora {
namespace {

constexpr PlainLetters::Colour ground{16, 16, 24};
constexpr PlainLetters::Colour caretColour{255, 255, 255};
constexpr unsigned char groundAlpha = 226;

std::vector<OverlayLine> wrapped(const std::vector<OverlayLine>& lines, std::size_t cells) {
    std::vector<OverlayLine> all;
    for (const OverlayLine& line : lines) {
        if (line.text.empty()) all.push_back(line);
        for (std::string& part : PlainLetters::wrap(line.text, cells))
            all.push_back({std::move(part), line.colour});
    }
    return all;
}

// A line that is written stays one: what is before the caret scrolls away. Where the caret is then.
int cutToCaret(std::string& text, int caret, std::size_t cells) {
    const auto isStart = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
    while (static_cast<std::size_t>(caret) >= cells && !text.empty()) {
        std::size_t end = 1;
        while (end < text.size() && !isStart(text[end])) ++end;
        text.erase(0, end);
        --caret;
    }
    std::size_t end = 0;
    for (std::size_t count = 0; end < text.size(); ++end)
        if (isStart(text[end]) && count++ == cells) break;
    text.resize(end);
    return caret;
}

}  // namespace

void Overlay::show(WindowCore& core, const std::vector<OverlayLine>& lines, int caret) {
    const int width = core.clientWidth();
    const int height = core.clientHeight();
    if (lines == lines_ && caret == caret_ && width == width_ && height == height_) return;
    lines_ = lines;
    caret_ = caret;
    width_ = width;
    height_ = height;
    if (lines.empty()) return core.setOverlay(nullptr, 0);
    const int scale = std::clamp(std::min(width / 400, height / 220), 1, 8);
    const int cell = PlainLetters::cellWidth * scale;
    const int row = (PlainLetters::cellHeight + 1) * scale;
    const auto cells = static_cast<std::size_t>(std::max(width / cell - 2, 4));
    std::vector<OverlayLine> all = lines;
    if (caret >= 0 && !all.empty()) caret = cutToCaret(all.back().text, caret, cells);
    all = wrapped(all, cells);
    const auto room = static_cast<std::size_t>(std::max((height - row) / row, 1));
    if (all.size() > room) all.erase(all.begin(), all.end() - static_cast<std::ptrdiff_t>(room));
    const int high = row * static_cast<int>(all.size()) + row;

    PlushImage* picture = createSolidColourImage(width, high, ground[0], ground[1], ground[2], groundAlpha);
    for (std::size_t i = 0; i < all.size(); ++i)
        PlainLetters::draw(*picture, all[i].text, cell, row * static_cast<int>(i) + row / 2, scale,
                           all[i].colour);
    if (caret >= 0 && !all.empty())
        PlainLetters::fill(*picture, cell * (caret + 1), high - row / 2 - scale * 3, cell - scale, scale,
                           caretColour);
    core.setOverlay(picture, 0);
    killPlushImage(picture);
}

}  // namespace kelmora
