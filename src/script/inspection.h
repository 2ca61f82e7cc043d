#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "script/variable.h"

namespace kelmora {

struct Interpreter;

using NamedValues = std::vector<std::pair<std::string, Variable>>;

// A running call, or the program around all calls.
struct RunningFrame {
    std::string function;    // empty for a program
    std::string path;        // of its source, empty without one
    std::uint32_t line = 0;  // from 1; 0 where none is known
    NamedValues locals;      // of its open blocks, the innermost first; a name that is hidden is left out
    NamedValues parameters;  // and loop variables
};

// What runs while a statement watcher looks, the innermost first. Within a coroutine's turn, that coroutine.
std::vector<RunningFrame> runningFrames(const Interpreter& script);
// Of the native level in hand.
NamedValues visibleNatives(const Interpreter& script);

}  // namespace kelmora
