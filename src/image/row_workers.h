#pragma once

#include <cstdint>
#include <functional>

namespace kelmora {

// Workers that one pixel operation may use; below 2 it runs on the calling thread.
extern std::int32_t threadCount;

// Rows [first, last) of a target.
using RowWork = std::function<void(std::int32_t first, std::int32_t last)>;

// Workers for a blit over `rows` rows that touches `pixels` pixels: one, the caller itself, for small work.
std::int32_t blitWorkers(std::int32_t rows, std::int64_t pixels);

// Hands out chunks of ceil(rows / workers) rows to workers and returns when all are done; the caller does
// none. `workers` is at least 1 and may be more than the machine has processors.
void shareRows(std::int32_t rows, std::int32_t workers, const RowWork& work);

// All rows on the caller when `workers` is 1 or less, else shared.
template <typename Work>
void runRows(std::int32_t rows, std::int32_t workers, const Work& work) {
    if (workers > 1)
        shareRows(rows, workers, std::cref(work));
    else
        work(0, rows);
}

}  // namespace kelmora
