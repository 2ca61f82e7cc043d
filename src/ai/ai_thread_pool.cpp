#include "ai/ai_thread_pool.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace kelmora {

AIThreadPool::AIThreadPool() {
    const unsigned count = std::max(std::thread::hardware_concurrency(), 2u) - 1;
    workers_.reserve(count);
    try {
        for (unsigned i = 0; i < count; ++i) workers_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        // Those that did start do the work.
    }
}

AIThreadPool::~AIThreadPool() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    condition_.notify_all();
    for (std::thread& worker : workers_) worker.join();
}

void AIThreadPool::submit(std::function<void()> task) {
    if (workers_.empty()) return task();
    {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    condition_.notify_one();
}

void AIThreadPool::work() {
    for (;;) {
        std::unique_lock lock(mutex_);
        condition_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
        if (tasks_.empty()) return;
        const std::function<void()> task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
    }
}

}  // namespace kelmora
