#include "plush/scaled_rows.h"

#include <algorithm>

#include "plush/draw_rows.h"

namespace kelmora {
namespace {

void gather(unsigned char* out, const unsigned char* row, const std::int32_t* columns, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(out + i * 4, row + static_cast<std::size_t>(columns[i]) * 4, 4);
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
    if (!blend && !ontoItself) {
        gather(out, row, columns.source.data(), count);
        return;
    }
    FetchBuffer buffer;
    const std::size_t step = buffer.step(ontoItself);
    for (std::size_t at = 0; at < count; at += step) {
        const std::size_t run = std::min(step, count - at);
        gather(buffer.pixels, row, columns.source.data() + at, run);
        drawRun(out + at * 4, buffer.pixels, run, blend, false);
    }
}

}  // namespace kelmora
