#include "plush/scaled_rows.h"

#include "plush/draw_rows.h"

namespace kelmora {
namespace {

void gather(unsigned char* out, const unsigned char* row, const std::int32_t* columns, std::size_t count) {
    const auto fetch = [&](std::size_t i) {
        std::memcpy(out + i * 4, row + static_cast<std::size_t>(columns[i]) * 4, 4);
    };
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        fetch(i);
        fetch(i + 1);
        fetch(i + 2);
        fetch(i + 3);
    }
    for (; i < count; ++i) fetch(i);
}

}  // namespace

void drawMapped(const PlushImage& target, std::int32_t targetRow, const PlushImage& source,
                std::int32_t sourceRow, const ColumnMap& columns, bool blend) {
    if (columns.count == 0) return;
    const bool ontoItself = target.pixels == source.pixels;
    const std::size_t count = static_cast<std::size_t>(columns.count);
    unsigned char* out = pixelAt(target, columns.first, targetRow);
    if (columns.source.empty()) {
        drawRun(out, pixelAt(source, columns.firstSource, sourceRow), count, blend, ontoItself);
        return;
    }
    const unsigned char* row = pixelAt(source, 0, sourceRow);
    if (ontoItself)
        for (std::size_t i = 0; i < count; ++i)
            drawPixel(out + i * 4, row + static_cast<std::size_t>(columns.source[i]) * 4, blend);
    else if (blend)
        rowKernels().mixMapped(out, row, columns.source.data(), count);
    else
        gather(out, row, columns.source.data(), count);
}

}  // namespace kelmora
