#pragma once

#include <cstdint>

namespace kelmora {

// Counts a nesting level up for a scope.
class DepthGuard {
public:
    explicit DepthGuard(std::uint32_t& depth) : depth_(depth) { ++depth_; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;
    ~DepthGuard() { --depth_; }

private:
    std::uint32_t& depth_;
};

}  // namespace kelmora
