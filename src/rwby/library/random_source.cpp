#include "rwby/library/random_source.h"

namespace vesper::ruby {

void RandomSource::seed(std::int64_t value) {
    engine_.seed(static_cast<std::uint64_t>(value));
}

double RandomSource::draw() {
    constexpr double step = 1.0 / 9007199254740992.0;  // a double holds 53 bits exactly
    return static_cast<double>(engine_() >> 11) * step;
}

std::int64_t RandomSource::drawBetween(std::int64_t lowest, std::int64_t highest) {
    const std::uint64_t span = static_cast<std::uint64_t>(highest) - static_cast<std::uint64_t>(lowest) + 1u;
    const std::uint64_t drawn = engine_();
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(lowest) + (span == 0 ? drawn : drawn % span));
}

}  // namespace vesper::ruby
