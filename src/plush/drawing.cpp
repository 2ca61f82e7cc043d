#include "plush/drawing.h"

#include <algorithm>
#include <cmath>

#include "plush/draw_rows.h"

namespace kelmora {
namespace {

// Columns or rows, the end not among them. Wide enough for any position and size that scripts can give.
struct Stretch {
    std::int64_t first;
    std::int64_t end;

    Stretch within(Stretch other) const {
        return {std::max(first, other.first),
                std::max(std::max(first, other.first), std::min(end, other.end))};
    }
};

Stretch columnsOf(const PlushImage& image) {
    return {0, image.width};
}
Stretch rowsOf(const PlushImage& image) {
    return {0, image.height};
}

class Brush {
public:
    Brush(const PlushImage& image, PlushColour colour) : image_(image), colour_(colour) {}

    // Coverage is 0 to 1.
    void dot(std::int64_t x, std::int64_t y, double coverage) const {
        const unsigned char pixel[4] = {colour_.r, colour_.g, colour_.b, alphaAt(coverage)};
        mixPixel(target(x, y), pixel);
    }

    // The row's columns lie inside the picture.
    void run(Stretch columns, std::int64_t y, double coverage) const {
        if (columns.first >= columns.end) return;
        FetchBuffer buffer;
        const auto count = static_cast<std::size_t>(columns.end - columns.first);
        const std::size_t step = std::min(count, FetchBuffer::capacity);
        const unsigned char pixel[4] = {colour_.r, colour_.g, colour_.b, alphaAt(coverage)};
        for (std::size_t i = 0; i < step; ++i) std::memcpy(buffer.pixels + i * 4, pixel, 4);
        unsigned char* out = target(columns.first, y);
        for (std::size_t at = 0; at < count; at += step)
            drawRun(out + at * 4, buffer.pixels, std::min(step, count - at), true, false);
    }

private:
    unsigned char* target(std::int64_t x, std::int64_t y) const {
        return pixelAt(image_, static_cast<std::int32_t>(x), static_cast<std::int32_t>(y));
    }
    unsigned char alphaAt(double coverage) const {
        return static_cast<unsigned char>(colour_.a * coverage + 0.5);
    }

    const PlushImage& image_;
    PlushColour colour_;
};

double held(double coverage) {
    return std::clamp(coverage, 0.0, 1.0);
}

// A box with round corners, and how much of a pixel it covers.
struct RoundBox {
    explicit RoundBox(const BoxShape& shape)
        : columns{shape.x, std::int64_t{shape.x} + shape.width},
          rows{shape.y, std::int64_t{shape.y} + shape.height},
          radius(std::clamp<std::int64_t>(
              shape.radius, 0, std::max<std::int64_t>(std::min(shape.width, shape.height), 0) / 2)) {}

    bool isEmpty() const { return columns.first >= columns.end || rows.first >= rows.end; }

    RoundBox inset(std::int64_t by) const {
        RoundBox inner = *this;
        inner.columns = {columns.first + by, columns.end - by};
        inner.rows = {rows.first + by, rows.end - by};
        inner.radius = std::max<std::int64_t>(radius - by, 0);
        return inner;
    }

    double coverage(std::int64_t x, std::int64_t y) const {
        if (x < columns.first || x >= columns.end || y < rows.first || y >= rows.end) return 0;
        const double dx = beyondCentre(x, columns);
        const double dy = beyondCentre(y, rows);
        if (dx <= 0 || dy <= 0) return 1;
        return held(static_cast<double>(radius) + 0.5 - std::sqrt(dx * dx + dy * dy));
    }

    Stretch columns;
    Stretch rows;
    std::int64_t radius;

private:
    // How far the pixel's middle lies beyond the centres of the nearer corners.
    double beyondCentre(std::int64_t at, Stretch side) const {
        const double middle = static_cast<double>(at) + 0.5;
        return std::max(static_cast<double>(side.first + radius) - middle,
                        middle - static_cast<double>(side.end - radius));
    }
};

// In the middle of a row nothing changes from column to column; only its ends are drawn pixel by pixel.
template <typename Coverage>
void drawRow(const PlushImage& image, const Brush& brush, Stretch columns, std::int64_t border,
             std::int64_t y, const Coverage& coverage) {
    const std::int64_t half = columns.first + (columns.end - columns.first) / 2;
    const Stretch middle{std::min(columns.first + border, half), std::max(columns.end - border, half)};
    const auto dots = [&](Stretch part) {
        const Stretch seen = part.within(columnsOf(image));
        for (std::int64_t x = seen.first; x < seen.end; ++x) brush.dot(x, y, coverage(x, y));
    };
    dots({columns.first, middle.first});
    if (middle.first < middle.end) {
        const double same = coverage(middle.first, y);
        if (same > 0) brush.run(middle.within(columnsOf(image)), y, same);
    }
    dots({middle.end, columns.end});
}

double distance(double dx, double dy) {
    return std::sqrt(dx * dx + dy * dy);
}

}  // namespace

void fillBox(const PlushImage& image, const BoxShape& shape, PlushColour colour) {
    const RoundBox box(shape);
    if (box.isEmpty() || colour.a == 0) return;
    const Brush brush(image, colour);
    const Stretch rows = box.rows.within(rowsOf(image));
    for (std::int64_t y = rows.first; y < rows.end; ++y)
        drawRow(image, brush, box.columns, box.radius, y,
                [&box](std::int64_t column, std::int64_t row) { return box.coverage(column, row); });
}

void outlineBox(const PlushImage& image, const BoxShape& shape, std::int32_t thickness, PlushColour colour) {
    const RoundBox outer(shape);
    if (outer.isEmpty() || thickness < 1 || colour.a == 0) return;
    const RoundBox inner = outer.inset(thickness);
    const auto coverage = [&](std::int64_t x, std::int64_t y) {
        return outer.coverage(x, y) - (inner.isEmpty() ? 0 : inner.coverage(x, y));
    };
    const Brush brush(image, colour);
    const Stretch rows = outer.rows.within(rowsOf(image));
    const std::int64_t border = std::max<std::int64_t>(outer.radius, thickness);
    for (std::int64_t y = rows.first; y < rows.end; ++y)
        drawRow(image, brush, outer.columns, border, y, coverage);
}

// Each row asks only for the columns near the piece of the line that passes it.
void drawLine(const PlushImage& image, const LineShape& line, PlushColour colour) {
    if (!(line.thickness > 0) || colour.a == 0) return;
    const double half = std::min(line.thickness, 1e6) / 2;
    const double dx = static_cast<double>(line.x2) - line.x1;
    const double dy = static_cast<double>(line.y2) - line.y1;
    const double squaredLength = dx * dx + dy * dy;
    const double reach = half + 1;
    const auto stretchOf = [](double low, double high, Stretch side) {
        const Stretch wanted{static_cast<std::int64_t>(std::floor(low)),
                             static_cast<std::int64_t>(std::ceil(high)) + 1};
        return wanted.within(side);
    };
    const auto along = [](double value) { return std::clamp(value, 0.0, 1.0); };
    const Brush brush(image, colour);
    const Stretch rows =
        stretchOf(std::min(line.y1, line.y2) - reach, std::max(line.y1, line.y2) + reach, rowsOf(image));
    for (std::int64_t y = rows.first; y < rows.end; ++y) {
        const double fromStart = static_cast<double>(y) - line.y1;
        const double enter = dy == 0 ? 0 : along((fromStart - reach) / dy);
        const double leave = dy == 0 ? 1 : along((fromStart + reach) / dy);
        const double a = line.x1 + dx * enter;
        const double b = line.x1 + dx * leave;
        const Stretch columns = stretchOf(std::min(a, b) - reach, std::max(a, b) + reach, columnsOf(image));
        for (std::int64_t x = columns.first; x < columns.end; ++x) {
            const double px = static_cast<double>(x) - line.x1;
            const double part = squaredLength > 0 ? along((px * dx + fromStart * dy) / squaredLength) : 0;
            const double coverage = held(half + 0.5 - distance(px - dx * part, fromStart - dy * part));
            if (coverage > 0) brush.dot(x, y, coverage);
        }
    }
}

}  // namespace kelmora
