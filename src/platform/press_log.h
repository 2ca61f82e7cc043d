#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/window_event.h"

namespace kelmora {

// What went down and was not asked for yet. It holds the last 256 presses: a script may never ask.
class PressLog {
public:
    // Keys that are in no table have no name and are left out.
    void add(int keyCode);
    void add(MouseButton button);
    // One press a notch.
    void addWheel(int notches);

    // The name of the first press, which goes, or null. Names are those of the key tables in small letters,
    // "mouse_left", "mouse_right", "mouse_middle", "wheel_up" and "wheel_down".
    const char* take();

private:
    void push(const char* name);

    static constexpr std::size_t capacity = 256;
    std::array<const char*, capacity> names_{};
    std::size_t first_ = 0;
    std::size_t count_ = 0;
};

}  // namespace kelmora
