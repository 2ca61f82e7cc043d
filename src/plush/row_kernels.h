#pragma once

#include <cstddef>
#include <cstdint>

#include "base/cpu_features.h"

// The inner loops of compositing, for whole runs of pixels. Each set gives the same bytes as any other.
namespace kelmora {

// One target row of a turned image: at column X, with dx = X - centre, the source column is
// (dx * cosine + rowSine) / scale + halfWidth and the source row (rowCosine - dx * sine) / scale +
// halfHeight, each to the nearest integer. Where 1 / scale is exact, `factor` holds it and multiplying gives
// the same bits.
struct TurnedRow {
    float centre;
    float cosine;
    float sine;
    float rowSine;
    float rowCosine;
    float scale;
    float halfWidth;
    float halfHeight;
    bool multiplies;
    float factor;
    const unsigned char* pixels;
    std::int32_t width;

    float column(float dx) const { return ratio(dx * cosine + rowSine) + halfWidth; }
    float row(float dx) const { return ratio(rowCosine - dx * sine) + halfHeight; }

private:
    float ratio(float value) const { return multiplies ? value * factor : value / scale; }
};

// Sides of the largest source that the vector kernels for turned and skewed rows can address.
constexpr std::int32_t vectorSideLimit = 32767;

// One target row of a triangle with the corners P, Q and R. At column x their weights are, in this order of
// arithmetic,
// q = inverse * ((x - px) * heightPR - offsetPR), p = inverse * ((qx - x) * aboveR - aboveQ * (rx - x)) and
// r = 1 - p - q; the pixel is inside when none is below 0.
struct TriangleRow {
    float inverse;  // 1 / the doubled area; 0 for a triangle without area, which holds no pixel
    float px;
    float qx;
    float rx;
    float heightPR;
    float offsetPR;
    float aboveQ;
    float aboveR;
};

// One target row of a skewed image. The upper triangle (top left, top right, bottom
// left) has the pixels on the shared edge.
struct SkewRow {
    TriangleRow upper;
    TriangleRow lower;
    float maxU;
    float maxV;
    const unsigned char* pixels;
    std::int32_t width;
    std::int32_t height;
};

struct RowKernels {
    // Mixes `count` pixels over the target. The two rows do not overlap.
    void (*mix)(unsigned char* target, const unsigned char* source, std::size_t count);
    // The same with the pixels of a source row at `columns`.
    void (*mixMapped)(unsigned char* target, const unsigned char* row, const std::int32_t* columns,
                      std::size_t count);
    // Fetches the pixels for target columns from `first` on, all of which lie inside the source.
    void (*turned)(const TurnedRow& row, std::int32_t first, unsigned char* out, std::size_t count);
    // Stores the pixels of columns [first, last) that a triangle holds into `target`, a whole row.
    void (*skew)(const SkewRow& row, std::int32_t first, std::int32_t last, unsigned char* target);
};

extern const RowKernels plainKernels;
#if defined(KELMORA_X86)
extern const RowKernels sse2Kernels;
extern const RowKernels avx2Kernels;  // only where hasAvx2()
#endif

// The set in use: the fastest that the processor has, unless `useRowKernels` chose another.
const RowKernels& rowKernels();
// For tests and measurements; null goes back to the fastest.
void useRowKernels(const RowKernels* kernels);

}  // namespace kelmora
