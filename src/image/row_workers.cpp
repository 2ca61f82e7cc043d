#include "image/row_workers.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "image/image_registry.h"

namespace kelmora {

std::int32_t threadCount = 6;
namespace {

// Below this waking workers costs more than they save; a bit less than 600 x 300 pixels.
constexpr std::int64_t sharedFrom = 180000;

// The rows of one call, cut into chunks of equal size but for the last.
struct Chunks {
    std::int32_t rows;
    std::int64_t size;
    const RowWork& work;

    std::int64_t count() const { return (rows + size - 1) / size; }
    void run(std::int64_t index) const {
        work(static_cast<std::int32_t>(index * size),
             static_cast<std::int32_t>(std::min<std::int64_t>(rows, (index + 1) * size)));
    }
};

// Threads that are kept between calls, at most one for each processor with the caller's: starting six for
// every blit would cost more than a full screen takes to draw.
class WorkerPool {
public:
    WorkerPool() = default;
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;
    ~WorkerPool() {
        {
            const std::lock_guard lock(mutex_);
            stopping_ = true;
        }
        wake_.notify_all();
        for (std::thread& thread : threads_) thread.join();
    }

    void run(const Chunks& chunks, std::int64_t workers) {
        const std::lock_guard oneCall(callMutex_);
        const std::int64_t processors = std::max(std::thread::hardware_concurrency(), 1u);
        const std::int64_t helpers = std::min({chunks.count(), workers, processors}) - 1;
        grow(helpers);
        {
            const std::lock_guard lock(mutex_);
            chunks_ = &chunks;
            next_ = 0;
            places_ = helpers;
        }
        if (helpers > 0) wake_.notify_all();
        std::exception_ptr failure;
        try {
            runSome(chunks);
        } catch (...) {
            failure = std::current_exception();
        }
        finish();
        if (failure) std::rethrow_exception(failure);
    }

private:
    void grow(std::int64_t size) {
        try {
            while (static_cast<std::int64_t>(threads_.size()) < size)
                threads_.emplace_back([this] { serve(); });
        } catch (const std::system_error&) {
            // The system gives no more threads; the ones there are and the caller do the work.
        }
    }
    void runSome(const Chunks& chunks) {
        const std::int64_t count = chunks.count();
        for (std::int64_t index = 0; (index = next_.fetch_add(1)) < count;) chunks.run(index);
    }
    // Waits for the helpers that took part; none joins any more.
    void finish() {
        std::unique_lock lock(mutex_);
        places_ = 0;
        for (int turn = 0; turn < turnsBeforeSleep && working_ > 0; ++turn) {
            lock.unlock();
            std::this_thread::yield();
            lock.lock();
        }
        done_.wait(lock, [this] { return working_ == 0; });
    }

    void serve() {
        std::unique_lock lock(mutex_);
        for (;;) {
            wake_.wait(lock, [this] { return stopping_ || places_ > 0; });
            if (stopping_) return;
            --places_;
            ++working_;
            const Chunks& chunks = *chunks_;
            lock.unlock();
            runSome(chunks);
            lock.lock();
            if (--working_ == 0) done_.notify_one();
        }
    }

    // A helper's last chunk is often nearly done when the caller's is.
    static constexpr int turnsBeforeSleep = 50;

    std::mutex callMutex_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    const Chunks* chunks_ = nullptr;
    std::atomic<std::int64_t> next_{0};
    std::int64_t places_ = 0;  // for helpers who have not joined
    std::int64_t working_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

// A helper is awake after 50 to 100 microseconds; work has to last some times as long to gain by it.
constexpr std::int64_t worthWaking = 250'000;
// Pieces for each worker, so that none waits long for another one's last, of at least so many rows.
constexpr std::int32_t piecesPerWorker = 4;
constexpr std::int64_t leastPiece = 8;

}  // namespace

std::int32_t blitWorkers(std::int32_t rows, std::int64_t pixels) {
    return std::min(rows, pixels < sharedFrom ? 1 : threadCount);
}

void shareRows(const RowShares& shares, const RowWork& work) {
    static WorkerPool pool;
    if (shares.rows <= 0) return;
    const bool alone = shares.nanoseconds < worthWaking || shares.workers < 2;
    if (alone && shares.inAnyPieces) {
        work(0, shares.rows);
        return;
    }
    const std::int64_t workers = std::max(shares.workers, 1);
    const std::int64_t pieces = workers * (shares.inAnyPieces ? piecesPerWorker : 1);
    const std::int64_t least = shares.inAnyPieces ? leastPiece : 1;
    const Chunks chunks{shares.rows, std::max((shares.rows + pieces - 1) / pieces, least), work};
    if (alone)
        for (std::int64_t index = 0; index < chunks.count(); ++index) chunks.run(index);
    else
        pool.run(chunks, workers);
}

}  // namespace kelmora
