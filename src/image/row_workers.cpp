#include "image/row_workers.h"

#include <algorithm>
#include <condition_variable>
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

// Threads that are kept between calls, at most one for each processor: starting six for every blit would cost
// more than a full screen takes to draw. Chunks beyond their number wait their turn.
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

    void run(const Chunks& chunks) {
        const std::lock_guard oneCall(callMutex_);
        const std::int64_t count = chunks.count();
        grow(std::min<std::int64_t>(count, std::max(std::thread::hardware_concurrency(), 1u)));
        if (threads_.empty()) {
            for (std::int64_t index = 0; index < count; ++index) chunks.run(index);
            return;
        }
        std::unique_lock lock(mutex_);
        chunks_ = &chunks;
        next_ = 0;
        count_ = count;
        unfinished_ = count;
        lock.unlock();
        wake_.notify_all();
        lock.lock();
        done_.wait(lock, [this] { return unfinished_ == 0; });
    }

private:
    void grow(std::int64_t size) {
        try {
            while (static_cast<std::int64_t>(threads_.size()) < size)
                threads_.emplace_back([this] { serve(); });
        } catch (const std::system_error&) {
            // The system gives no more threads; the ones there are do the work, or the caller.
        }
    }

    void serve() {
        std::unique_lock lock(mutex_);
        for (;;) {
            wake_.wait(lock, [this] { return stopping_ || next_ < count_; });
            if (stopping_) return;
            const std::int64_t index = next_++;
            const Chunks& chunks = *chunks_;
            lock.unlock();
            chunks.run(index);
            lock.lock();
            if (--unfinished_ == 0) done_.notify_one();
        }
    }

    std::mutex callMutex_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    const Chunks* chunks_ = nullptr;
    std::int64_t next_ = 0;
    std::int64_t count_ = 0;
    std::int64_t unfinished_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace

std::int32_t blitWorkers(std::int32_t rows, std::int64_t pixels) {
    return std::min(rows, pixels < sharedFrom ? 1 : threadCount);
}

void shareRows(std::int32_t rows, std::int32_t workers, const RowWork& work) {
    static WorkerPool pool;
    if (rows > 0) pool.run({rows, (std::int64_t{rows} + workers - 1) / workers, work});
}

}  // namespace kelmora
