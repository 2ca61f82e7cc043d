#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

// Works that are measured in turn, so that a busy machine troubles all alike.
namespace kelmora {

enum class Clock { Processor, Wall };

// Processor time is what one thread needs whatever else the machine does; only wall time tells of workers.
inline double secondsOf(const std::function<void()>& work, Clock clock) {
    if (clock == Clock::Processor) {
        const std::clock_t start = std::clock();
        work();
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Contestant {
    std::string name;
    std::function<void()> work;
    std::vector<double> times{};
};

inline void runInTurns(benchmark::State& state, std::vector<Contestant>& contestants, int repetitions,
                       Clock clock) {
    for (auto _ : state)
        for (int i = 0; i < repetitions; ++i)
            for (Contestant& contestant : contestants)
                contestant.times.push_back(secondsOf(contestant.work, clock));
}

}  // namespace kelmora
