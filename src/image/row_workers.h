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

// The rows of one call.
struct RowShares {
    std::int32_t rows;
    std::int32_t workers;  // with 1 or less the caller does all rows at once; may be more than processors
    // What all rows cost one thread, about: others are woken where that saves time.
    std::int64_t nanoseconds = INT64_MAX;
    // Pieces of any size do, which share best; else chunks of ceil(rows / workers).
    bool inAnyPieces = false;
};

// Returns when all rows are done, some of them by the caller.
void shareRows(const RowShares& shares, const RowWork& work);

template <typename Work>
void runRows(const RowShares& shares, const Work& work) {
    if (shares.workers > 1)
        shareRows(shares, std::cref(work));
    else
        work(0, shares.rows);
}

}  // namespace kelmora
