#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace kelmora {

// Keeps recursion of scripts and of nested expressions away from the end of the native stack.
class NativeStack {
public:
    // Bytes that a run may use, counted from where the outermost run began. Main threads have 8 MiB on
    // Linux, and our Windows link asks for as much.
    static constexpr std::size_t defaultBudget = std::size_t{5} << 20;

    void setBudget(std::size_t bytes) { budget_ = bytes; }
    void markBase() { base_ = here(); }
    void check() const {
        if (base_ - here() > budget_)  // the stack grows downwards
            throw std::runtime_error("Stack overflow: calls or expressions are nested too deeply");
    }

private:
    static std::uintptr_t here() { return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)); }

    std::uintptr_t base_ = 0;
    std::size_t budget_ = defaultBudget;
};

}  // namespace kelmora
