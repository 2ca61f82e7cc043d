#include "plush/row_kernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "plush/mix.h"

namespace kelmora {
namespace {

void mixRow(unsigned char* target, const unsigned char* source, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) mixPixel(target + i * 4, source + i * 4);
}

void mixMappedRow(unsigned char* target, const unsigned char* row, const std::int32_t* columns,
                  std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        mixPixel(target + i * 4, row + static_cast<std::size_t>(columns[i]) * 4);
}

void turnedPixels(const TurnedRow& row, std::int32_t first, unsigned char* out, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const float dx = static_cast<float>(first + static_cast<std::int32_t>(i)) - row.centre;
        const auto u = static_cast<std::int32_t>(std::round(row.column(dx)));
        const auto v = static_cast<std::int32_t>(std::round(row.row(dx)));
        std::memcpy(out + i * 4, row.pixels + static_cast<std::size_t>(std::int64_t{v} * row.width + u) * 4,
                    4);
    }
}

struct Weights {
    float p;
    float q;
    float r;

    bool inside() const { return p >= 0 && q >= 0 && r >= 0; }
};

Weights weightsAt(const TriangleRow& row, float x) {
    const float q = row.inverse * ((x - row.px) * row.heightPR - row.offsetPR);
    const float p = row.inverse * ((row.qx - x) * row.aboveR - row.aboveQ * (row.rx - x));
    return {p, q, 1 - p - q};
}

void storeNearest(const SkewRow& row, float u, float v, unsigned char* target) {
    const auto column = static_cast<std::int64_t>(std::round(row.maxU * u));
    const auto line = static_cast<std::int64_t>(std::round(row.maxV * v));
    const std::int64_t index = std::clamp<std::int64_t>(line, 0, row.height - 1) * row.width +
                               std::clamp<std::int64_t>(column, 0, row.width - 1);
    std::memmove(target, row.pixels + static_cast<std::size_t>(index) * 4, 4);
}

void skewPixels(const SkewRow& row, std::int32_t first, std::int32_t last, unsigned char* target) {
    for (std::int32_t x = first; x < last; ++x) {
        unsigned char* pixel = target + static_cast<std::size_t>(x) * 4;
        const Weights upper = weightsAt(row.upper, static_cast<float>(x));
        if (row.upper.inverse != 0 && upper.inside()) {
            storeNearest(row, upper.q, upper.r, pixel);
            continue;
        }
        const Weights lower = weightsAt(row.lower, static_cast<float>(x));
        if (row.lower.inverse != 0 && lower.inside())
            storeNearest(row, lower.q + lower.p, lower.q + lower.r, pixel);
    }
}

const RowKernels& fastestKernels() {
#if defined(KELMORA_X86)
    return hasAvx2() ? avx2Kernels : sse2Kernels;
#else
    return plainKernels;
#endif
}

const RowKernels* chosenKernels = nullptr;

}  // namespace

const RowKernels plainKernels{mixRow, mixMappedRow, turnedPixels, skewPixels};

const RowKernels& rowKernels() {
    return chosenKernels ? *chosenKernels : fastestKernels();
}

void useRowKernels(const RowKernels* kernels) {
    chosenKernels = kernels;
}

}  // namespace kelmora
