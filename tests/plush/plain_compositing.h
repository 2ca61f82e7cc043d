#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "base/trigonometry.h"
#include "plush/blit.h"
#include "plush/skew.h"

// Compositing in its plainest form, every target pixel tested, as what the fast forms must equal.
namespace kelmora::plain {

struct Picture {
    std::int32_t width;
    std::int32_t height;
    std::vector<unsigned char> bytes;

    PlushImage image() { return {width, height, bytes.data(), 0, 0, nullptr}; }
};

inline void draw(unsigned char* target, const unsigned char* source, bool blend) {
    const int a = source[3];
    if (!blend || a == 255) {
        std::copy_n(source, 4, target);
    } else if (a != 0) {
        const int alpha = std::min(a + target[3] - target[3] * a / 255, 255);
        for (int c = 0; c < 3; ++c)
            target[c] = static_cast<unsigned char>(((255 - a) * target[c] + a * source[c]) / 255);
        target[3] = static_cast<unsigned char>(alpha);
    }
}

inline unsigned char* at(const PlushImage& image, std::int64_t x, std::int64_t y) {
    const bool inside = x >= 0 && y >= 0 && x < image.width && y < image.height;
    return inside ? image.pixels + (y * image.width + x) * 4 : nullptr;
}

// Source pixels are found by `place(X, Y)`, which gives their coordinates.
template <typename Place>
void drawBox(const PlushImage& target, const PlushImage& source, bool blend, float left, float top,
             float right, float bottom, Place place) {
    for (std::int32_t y = 0; y < target.height; ++y)
        for (std::int32_t x = 0; x < target.width; ++x) {
            const auto fx = static_cast<float>(x), fy = static_cast<float>(y);
            if (fx < std::trunc(left) || fx >= std::ceil(right)) continue;
            if (fy < std::trunc(top) || fy >= std::ceil(bottom)) continue;
            const auto [u, v] = place(fx, fy);
            const float column = std::round(u), row = std::round(v);
            if (!(std::abs(column) < 1e9f && std::abs(row) < 1e9f)) continue;
            const unsigned char* pixel =
                at(source, static_cast<std::int64_t>(column), static_cast<std::int64_t>(row));
            if (pixel) draw(at(target, x, y), pixel, blend);
        }
}

struct Place {
    float u;
    float v;
};

inline void blitImage(const Blit& b) {
    const auto w = static_cast<float>(b.source.width), h = static_cast<float>(b.source.height);
    const auto x = static_cast<float>(b.x), y = static_cast<float>(b.y);
    if (b.x >= b.target.width || b.y >= b.target.height || x + w < 1 || y + h < 1 || b.scale == 0) return;
    float angle = std::fmod(b.rotation, 360.0f);
    if (angle < 0) angle += 360.0f;
    const float sw = b.scale * w, sh = b.scale * h, cx = x + sw * 0.5f, cy = y + sh * 0.5f;
    if (angle < 1e-5f || angle > 359.999f) {
        drawBox(b.target, b.source, b.blend, x, y, x + sw, y + sh, [&](float px, float py) {
            return Place{(px - x) / b.scale, (py - y) / b.scale};
        });
        return;
    }
    const float theta = b.rotation * 0.017453292f;
    const auto c = static_cast<float>(cosineOf(theta)), s = static_cast<float>(sineOf(theta));
    std::vector<float> xs, ys;
    for (const float px : {x, x + sw})
        for (const float py : {y, y + sh}) {
            xs.push_back(cx + (px - cx) * c - (py - cy) * s);
            ys.push_back(cy + (px - cx) * s + (py - cy) * c);
        }
    const auto [left, right] = std::minmax_element(xs.begin(), xs.end());
    const auto [top, bottom] = std::minmax_element(ys.begin(), ys.end());
    drawBox(b.target, b.source, b.blend, std::floor(*left), std::floor(*top), *right, *bottom,
            [&](float px, float py) {
                const float dx = px - cx, dy = py - cy;
                return Place{(dx * c + dy * s) / b.scale + w * 0.5f, (dy * c - dx * s) / b.scale + h * 0.5f};
            });
}

inline void blitImageRect(const RectBlit& b) {
    if (b.width < 1 || b.height < 1 || b.scale == 0) return;
    const std::int64_t left = std::max(b.sourceX, 0), top = std::max(b.sourceY, 0);
    const std::int64_t columns =
        std::min<std::int64_t>(std::int64_t{b.sourceX} + b.width, b.source.width) - left;
    const std::int64_t rows =
        std::min<std::int64_t>(std::int64_t{b.sourceY} + b.height, b.source.height) - top;
    if (columns < 1 || rows < 1) return;
    const auto drawn = [&](std::int64_t size) {
        return std::max(std::round(b.scale * static_cast<float>(size)), 1.0f);
    };
    for (std::int32_t y = 0; y < b.target.height; ++y)
        for (std::int32_t x = 0; x < b.target.width; ++x) {
            const float dx = static_cast<float>(std::int64_t{x} - b.x);
            const float dy = static_cast<float>(std::int64_t{y} - b.y);
            if (dx < 0 || dy < 0 || dx >= drawn(columns) || dy >= drawn(rows)) continue;
            const auto column = std::min<std::int64_t>(columns - 1, static_cast<std::int64_t>(dx / b.scale));
            const auto row = std::min<std::int64_t>(rows - 1, static_cast<std::int64_t>(dy / b.scale));
            draw(at(b.target, x, y), at(b.source, left + column, top + row), b.blend);
        }
}

// Corners: left top, right top, left bottom, right bottom.
inline void skew(const std::int32_t (&corners)[8], const PlushImage& input, const PlushImage& output) {
    float f[8];
    std::copy(std::begin(corners), std::end(corners), f);
    const auto [ltx, lty, rtx, rty, lbx, lby, rbx, rby] = f;
    const float detA = (rtx - ltx) * (lby - lty) - (rty - lty) * (lbx - ltx);
    const float detB = (rbx - rtx) * (lby - rty) - (rby - rty) * (lbx - rtx);
    const float invA = std::abs(detA) < 1e-5f ? 0 : 1 / detA, invB = std::abs(detB) < 1e-5f ? 0 : 1 / detB;
    const auto maxU = static_cast<float>(input.width - 1), maxV = static_cast<float>(input.height - 1);
    const auto store = [&](std::int32_t px, std::int32_t py, float u, float v) {
        const auto column = std::clamp(static_cast<std::int32_t>(std::round(u)), 0, input.width - 1);
        const auto row = std::clamp(static_cast<std::int32_t>(std::round(v)), 0, input.height - 1);
        std::copy_n(at(input, column, row), 4, at(output, px, py));
    };
    for (std::int32_t py = 0; py < output.height; ++py)
        for (std::int32_t px = 0; px < output.width; ++px) {
            const auto x = static_cast<float>(px), y = static_cast<float>(py);
            const float l1 = invA * ((x - ltx) * (lby - lty) - (y - lty) * (lbx - ltx));
            const float l2 = invA * ((rtx - x) * (lby - y) - (rty - y) * (lbx - x));
            const float l3 = 1 - l2 - l1;
            const float m1 = invB * ((x - rtx) * (lby - rty) - (y - rty) * (lbx - rtx));
            const float m2 = invB * ((rbx - x) * (lby - y) - (rby - y) * (lbx - x));
            const float m3 = 1 - m2 - m1;
            if (invA != 0 && l1 >= 0 && l2 >= 0 && l3 >= 0)
                store(px, py, maxU * l1, maxV * l3);
            else if (invB != 0 && m1 >= 0 && m2 >= 0 && m3 >= 0)
                store(px, py, maxU * (m1 + m2), maxV * (m1 + m3));
        }
}

}  // namespace kelmora::plain
