#include "ai/ai_jobs.h"

#include <chrono>
#include <exception>
#include <memory>
#include <utility>

namespace kelmora {
namespace {

AIJobs::Answer answerOf(std::future<AIJobResult> future) {
    AIJobs::Answer answer;
    try {
        answer.result = future.get();
        answer.state = AIJobs::State::Finished;
    } catch (const std::exception& failure) {
        answer.failure = failure.what();
        answer.state = AIJobs::State::Failed;
    }
    return answer;
}

}  // namespace

std::int32_t AIJobs::submit(AIRequest request) {
    const std::int32_t id = ++lastId_;
    // Shared, since a task that is queued has to be copyable.
    auto task = std::make_shared<std::packaged_task<AIJobResult()>>(
        [request = std::move(request)]() mutable { return aiExecuteRequest(std::move(request)); });
    {
        const std::lock_guard lock(mutex_);
        jobs_.emplace(id, task->get_future());
    }
    pool_.submit([task] { (*task)(); });
    return id;
}

AIJobs::Answer AIJobs::check(std::int32_t id) {
    std::future<AIJobResult> future;
    {
        const std::lock_guard lock(mutex_);
        const auto job = jobs_.find(id);
        if (job == jobs_.end()) return {};
        if (job->second.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
            Answer answer;
            answer.state = State::Running;
            return answer;
        }
        future = std::move(job->second);
        jobs_.erase(job);
    }
    return answerOf(std::move(future));
}

}  // namespace kelmora
