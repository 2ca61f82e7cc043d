#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <span>
#include <vector>

#include "script/loops.h"
#include "script/parsed_line.h"
#include "script/scopes.h"
#include "script/soft_error.h"
#include "script/variable.h"

namespace kelmora {

struct Interpreter;

// Unwinds the turn of a coroutine that started another one. Never leaves the turn.
struct CoroutineTerminated {};

// One open block of a coroutine.
struct CoroutineFrame {
    enum class Kind : std::uint8_t { Block = 0, While = 1, Repeat = 2, NumericFor = 3, GenericFor = 4 };

    Kind kind = Kind::Block;
    std::uint32_t current = 0;      // next line
    std::uint32_t end = 0;          // the frame is over when `current` gets here
    std::uint32_t loopLine = 0;     // line with the loop's condition or clause
    CallScope variables = nullptr;  // of a for loop
    NumericLoop numbers;
    SequenceWalk sequence;
};

struct CoroutineState {
    Variable callable;
    const std::vector<ParsedScriptLine>* lines = nullptr;  // kept alive by the callable
    std::vector<CoroutineFrame> frames;
    Scopes::Frames scopes;
    SoftError softError;
    std::vector<std::vector<Variable>> varargs;
};

// The one slot for a coroutine that advances beside the main script, a line at a time.
struct Coroutines {
    // Schedules the decay function in place of calling it. In a turn this ends the running coroutine.
    void start(Scopes& scopes, const Variable& callable, std::span<const Variable> arguments);
    void kill();

    bool wantsTurn() const { return scheduled && !inTurn && !pendingException; }
    // A coroutine is scheduled, or one has failed.
    bool needAttention() const { return scheduled || pendingException; }
    void rethrowPending() {
        if (pendingException) std::rethrow_exception(std::exchange(pendingException, nullptr));
    }

    // Their turns are taken by the interpreter.
    std::shared_ptr<CoroutineState> scheduled;
    std::shared_ptr<CoroutineState> next;
    std::exception_ptr pendingException;
    bool inTurn = false;
    std::uint32_t callsAround = 0;  // the turn
    bool terminateRequested = false;
};

}  // namespace kelmora
