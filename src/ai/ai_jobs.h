#pragma once

#include <atomic>
#include <cstdint>
#include <future>
#include <mutex>
#include <string>
#include <unordered_map>

#include "ai/ai_request.h"
#include "ai/ai_thread_pool.h"

namespace kelmora {

// Requests that are worked on beside the game, each under a number of its own, from 1 on. A result waits
// until it is asked for. At the end all jobs run to theirs.
class AIJobs {
public:
    std::int32_t submit(AIRequest request);

    enum class State { Unknown, Running, Finished, Failed };
    struct Answer {
        State state = State::Unknown;
        AIJobResult result;   // of a finished job
        std::string failure;  // of a failed one
    };
    // A finished or failed job is handed over, and unknown from then on.
    Answer check(std::int32_t id);

private:
    std::atomic<std::int32_t> lastId_{0};
    std::mutex mutex_;
    std::unordered_map<std::int32_t, std::future<AIJobResult>> jobs_;
    AIThreadPool pool_;  // goes first
};

}  // namespace kelmora
