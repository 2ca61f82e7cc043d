#include "plush/row_workers.h"

#include <algorithm>
#include <thread>
#include <vector>

#include "plush/live_images.h"

namespace kelmora {
namespace {

// Below this starting workers costs more than they save; a bit less than 600 x 300 pixels.
constexpr std::int64_t sharedFrom = 180000;

}  // namespace

std::int32_t blitWorkers(std::int32_t rows, std::int64_t pixels) {
    return std::min(rows, pixels < sharedFrom ? 1 : threadCount);
}

void shareRows(std::int32_t rows, std::int32_t workers, const RowWork& work) {
    const std::int64_t chunk = (std::int64_t{rows} + workers - 1) / workers;
    std::vector<std::thread> threads;
    for (std::int64_t first = 0; first < rows; first += chunk)
        threads.emplace_back(work, static_cast<std::int32_t>(first),
                             static_cast<std::int32_t>(std::min<std::int64_t>(rows, first + chunk)));
    for (std::thread& thread : threads) thread.join();
}

void runRows(std::int32_t rows, std::int32_t workers, const RowWork& work) {
    if (workers > 1)
        shareRows(rows, workers, work);
    else
        work(0, rows);
}

}  // namespace kelmora
