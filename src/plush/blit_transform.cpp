#include "plush/blit_transform.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "base/saturating.h"
#include "base/trigonometry.h"
#include "image/row_workers.h"
#include "plush/draw_rows.h"
#include "plush/scaled_rows.h"

namespace kelmora {
namespace {

constexpr float radiansPerDegree = 0.017453292f;

// Target pixels that a draw may touch, cut to the target.
struct Box {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;

    std::int32_t rows() const { return std::max(bottom - top, 0); }
    std::int64_t pixels() const { return std::int64_t{rows()} * std::max(right - left, 0); }
};

Box boxOn(const PlushImage& target, float left, float top, float right, float bottom) {
    return {std::max(saturatingInt(left), 0), std::max(saturatingInt(top), 0),
            std::clamp(saturatingInt(std::ceil(right)), 0, target.width),
            std::clamp(saturatingInt(std::ceil(bottom)), 0, target.height)};
}

template <typename Work>
void runBoxRows(const Box& box, const Work& work) {
    if (box.pixels() == 0) return;
    runRows({box.rows(), blitWorkers(box.rows(), box.pixels()), box.pixels(), true},
            [&](std::int32_t first, std::int32_t last) { work(box.top + first, box.top + last); });
}

// Rounding to the nearest, halves away from zero, puts a value on [0, size) when it lies between these.
constexpr float lowEnd = -0.5f;
float highEnd(std::int32_t size) {
    return static_cast<float>(size) - 0.5f;
}

void blitUpright(const Blit& blit) {
    const auto x = static_cast<float>(blit.x);
    const auto y = static_cast<float>(blit.y);
    const Box box = boxOn(blit.target, x, y, x + blit.scale * static_cast<float>(blit.source.width),
                          y + blit.scale * static_cast<float>(blit.source.height));
    if (box.pixels() == 0) return;
    // Columns past the source's last one come last, since coordinates never fall along the row.
    const float columnEnd = highEnd(blit.source.width);
    const float rowEnd = highEnd(blit.source.height);
    ColumnMap columns;
    columns.first = box.left;
    columns.source.reserve(static_cast<std::size_t>(box.right - box.left));
    for (std::int32_t column = box.left; column < box.right; ++column) {
        const float u = (static_cast<float>(column) - x) / blit.scale;
        if (!(u > lowEnd && u < columnEnd)) break;
        columns.source.push_back(static_cast<std::int32_t>(std::round(u)));
    }
    columns.count = static_cast<std::int32_t>(columns.source.size());
    runBoxRows(box, [&](std::int32_t first, std::int32_t last) {
        for (std::int32_t row = first; row < last; ++row) {
            const float v = (static_cast<float>(row) - y) / blit.scale;
            if (v > lowEnd && v < rowEnd)
                drawMapped(blit.target, row, blit.source, static_cast<std::int32_t>(std::round(v)), columns,
                           blit.blend);
        }
    });
}

// The first of [low, high) for which `holds` is true, or `high`; it is false before and true from there on.
// Searches outwards from `guess`.
template <typename Holds>
std::int32_t firstWhere(std::int32_t low, std::int32_t high, float guess, Holds holds) {
    std::int32_t at = std::clamp(saturatingInt(guess), low, high);
    std::int64_t step = 1;
    while (at < high && !holds(at)) {
        low = at + 1;
        at = static_cast<std::int32_t>(std::min<std::int64_t>(low + step - 1, high));
        step *= 2;
    }
    high = at;
    step = 1;
    while (low < high) {
        at = static_cast<std::int32_t>(std::max<std::int64_t>(high - step, low));
        if (holds(at)) {
            high = at;
            step *= 2;
        } else {
            low = at + 1;
            step = std::max((high - low) / 2, 1);
        }
    }
    return high;
}

struct Span {
    std::int32_t first;
    std::int32_t last;
};

// A coordinate along a target row: about (dx * slope + offset) / scale + half. Every step of its arithmetic
// keeps order, rounding included, so the pixels where it lies on [0, size) are neighbours.
struct Coordinate {
    float slope;
    float offset;
    float scale;
    float half;
    float end;

    // `value` computes the coordinate at dx exactly as the pixels are fetched.
    template <typename Value>
    Span within(Span span, float centre, Value value) const {
        const auto above = [&](std::int32_t x) { return value(static_cast<float>(x) - centre) > lowEnd; };
        const auto below = [&](std::int32_t x) { return value(static_cast<float>(x) - centre) < end; };
        const float atLow = centre + ((lowEnd - half) * scale - offset) / slope;
        const float atEnd = centre + ((end - half) * scale - offset) / slope;
        const bool rising = (slope < 0) == (scale < 0);
        const auto notBelow = [&](std::int32_t x) { return !below(x); };
        const auto notAbove = [&](std::int32_t x) { return !above(x); };
        if (rising) {
            span.first = firstWhere(span.first, span.last, std::ceil(atLow), above);
            span.last = firstWhere(span.first, span.last, std::ceil(atEnd), notBelow);
        } else {
            span.first = firstWhere(span.first, span.last, std::ceil(atEnd), below);
            span.last = firstWhere(span.first, span.last, std::ceil(atLow), notAbove);
        }
        return span;
    }
};

bool hasExactInverse(float scale) {
    int exponent = 0;
    return std::abs(std::frexp(scale, &exponent)) == 0.5f && std::isnormal(1.0f / scale);
}

class TurnedBlit {
public:
    explicit TurnedBlit(const Blit& blit) : blit_(blit) {
        const float width = blit.scale * static_cast<float>(blit.source.width);
        const float height = blit.scale * static_cast<float>(blit.source.height);
        const auto x = static_cast<float>(blit.x);
        const auto y = static_cast<float>(blit.y);
        const float angle = blit.rotation * radiansPerDegree;
        centreY_ = y + height * 0.5f;
        row_ = {x + width * 0.5f,
                static_cast<float>(cosineOf(angle)),
                static_cast<float>(sineOf(angle)),
                0,
                0,
                blit.scale,
                static_cast<float>(blit.source.width) * 0.5f,
                static_cast<float>(blit.source.height) * 0.5f,
                hasExactInverse(blit.scale),
                1.0f / blit.scale,
                blit.source.pixels,
                blit.source.width};
        box_ = boxAround(x, y, x + width, y + height);
        const bool small = blit.source.width <= vectorSideLimit && blit.source.height <= vectorSideLimit;
        fetch_ = small ? rowKernels().turned : plainKernels.turned;
    }

    const Box& box() const { return box_; }

    void drawRows(std::int32_t first, std::int32_t last) const {
        for (std::int32_t y = first; y < last; ++y) drawRow(y);
    }

private:
    // Around the four corners turned about the centre.
    Box boxAround(float left, float top, float right, float bottom) const {
        const auto turnedX = [this](float x, float y) {
            return row_.centre + (x - row_.centre) * row_.cosine - (y - centreY_) * row_.sine;
        };
        const auto turnedY = [this](float x, float y) {
            return centreY_ + (x - row_.centre) * row_.sine + (y - centreY_) * row_.cosine;
        };
        const auto xs = {turnedX(left, top), turnedX(right, top), turnedX(left, bottom),
                         turnedX(right, bottom)};
        const auto ys = {turnedY(left, top), turnedY(right, top), turnedY(left, bottom),
                         turnedY(right, bottom)};
        return boxOn(blit_.target, std::floor(std::min(xs)), std::floor(std::min(ys)), std::max(xs),
                     std::max(ys));
    }

    Span coveredSpan(const TurnedRow& row) const {
        const Coordinate across{row.cosine, row.rowSine, row.scale, row.halfWidth,
                                highEnd(blit_.source.width)};
        const Coordinate down{-row.sine, row.rowCosine, row.scale, row.halfHeight,
                              highEnd(blit_.source.height)};
        Span span{box_.left, box_.right};
        span = across.within(span, row.centre, [&row](float dx) { return row.column(dx); });
        return down.within(span, row.centre, [&row](float dx) { return row.row(dx); });
    }

    void drawRow(std::int32_t y) const {
        TurnedRow row = row_;
        const float dy = static_cast<float>(y) - centreY_;
        row.rowSine = dy * row.sine;
        row.rowCosine = dy * row.cosine;
        const Span span = coveredSpan(row);
        if (!blit_.blend && !blit_.ontoItself()) {
            fetch_(row, span.first, pixelAt(blit_.target, span.first, y),
                   static_cast<std::size_t>(span.last - span.first));
            return;
        }
        FetchBuffer buffer;
        const auto step = static_cast<std::int32_t>(buffer.step(blit_.ontoItself()));
        for (std::int32_t x = span.first; x < span.last; x += step) {
            const auto count = static_cast<std::size_t>(std::min(step, span.last - x));
            fetch_(row, x, buffer.pixels, count);
            drawRun(pixelAt(blit_.target, x, y), buffer.pixels, count, blit_.blend, false);
        }
    }

    const Blit& blit_;
    TurnedRow row_;  // what all rows share
    float centreY_ = 0;
    Box box_{};
    decltype(RowKernels::turned) fetch_ = nullptr;
};

}  // namespace

void blitTransformed(const Blit& blit, bool turned) {
    if (!turned) {
        blitUpright(blit);
        return;
    }
    const TurnedBlit work(blit);
    runBoxRows(work.box(), [&work](std::int32_t first, std::int32_t last) { work.drawRows(first, last); });
}

}  // namespace kelmora
