#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace kelmora {

// Keeps recursion of scripts and of nested expressions away from the end of the native stack.
class NativeStack {
public:
    void setBudget(std::size_t bytes) { budget_ = bytes; }
    // The stack's lowest address, where the system can tell it.
    void setLowAddress(std::uintptr_t address) { lowAddress_ = address; }

    bool isMarked() const { return limit_ != 0; }
    // Where the outermost run begins.
    void markBase() {
        const std::uintptr_t top = here();
        limit_ = top > budget_ ? top - budget_ : 0;
        if (lowAddress_ != 0 && lowAddress_ < top) limit_ = std::max(limit_, lowAddress_ + reserve);
    }
    void check() const {
        if (here() < limit_)  // the stack grows downwards
            throw std::runtime_error("Stack overflow: calls or expressions are nested too deeply");
    }

private:
    // Main threads have 8 MiB on Linux, and our Windows link asks for as much.
    static constexpr std::size_t defaultBudget = std::size_t{6} << 20;
    // For what runs on top of the last checked frame: library calls, event pumps, decoders.
    static constexpr std::size_t reserve = std::size_t{1} << 20;

    static std::uintptr_t here() { return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)); }

    std::uintptr_t limit_ = 0;
    std::uintptr_t lowAddress_ = 0;
    std::size_t budget_ = defaultBudget;
};

}  // namespace kelmora
