#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace kelmora {

// Runs tasks in the order in which they come, one thread fewer than the machine has hardware threads but at
// least one. The end of the pool waits for every task that it was given.
class AIThreadPool {
public:
    AIThreadPool();
    ~AIThreadPool();
    AIThreadPool(const AIThreadPool&) = delete;
    AIThreadPool& operator=(const AIThreadPool&) = delete;

    // Where no thread could be started, the task runs at once.
    void submit(std::function<void()> task);

private:
    void work();

    std::mutex mutex_;
    std::condition_variable condition_;
    std::deque<std::function<void()>> tasks_;
    bool stopping_ = false;
    std::vector<std::thread> workers_;
};

}  // namespace kelmora
