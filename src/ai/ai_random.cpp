#include "ai/ai_random.h"

namespace kelmora {

std::uint32_t AIRandom::below(std::uint32_t count) {
    const std::lock_guard lock(mutex_);
    return std::uniform_int_distribution<std::uint32_t>(1, count)(engine_) - 1;
}

double AIRandom::unit() {
    const std::lock_guard lock(mutex_);
    const double low = static_cast<double>(engine_());
    const double high = static_cast<double>(engine_());
    return (high * 4294967296.0 + low) * 5.421010862427522e-20;
}

AIRandom& aiRng() {
    static AIRandom random(std::random_device{}());
    return random;
}

}  // namespace kelmora
