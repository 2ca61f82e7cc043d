#pragma once

#include <array>
#include <exception>
#include <string>

#include "base/call_trail.h"
#include "script/variable.h"

namespace kelmora {

struct Interpreter;
struct ParsedScriptLine;

// Where script was when a failure was raised. Costs nothing while nothing is raised.
class ErrorTrail {
public:
    // To be called while an exception passes through a call, before the call's frame is gone.
    void note(const Interpreter& script, const std::string& message);
    // The failure that was noted last reaches script as this text.
    void caught(const Variable& text);
    // Script raises this value: with a text that it got from a protected call, the failure behind it is
    // meant.
    void raising(const Variable& value);

    // The statement that raised the exception in the handler that asks, then those that led there by calls.
    // Nothing for one that was not noted.
    const CallTrail& places() const;
    // Of a failure that script was given as this text.
    const CallTrail& placesOf(const Variable& text) const;

    // While it stands, the calls that are at work when it is made belong to no failure: to try something in
    // the midst of a game.
    class Foot {
    public:
        explicit Foot(Interpreter& script);
        Foot(const Foot&) = delete;
        Foot& operator=(const Foot&) = delete;
        ~Foot();

    private:
        friend ErrorTrail;
        ErrorTrail& trail_;
        const Foot* below_;
        std::uint32_t calls_;
        const ParsedScriptLine* line_;
    };

private:
    struct Way {
        std::exception_ptr of;
        std::string message;
        Variable text;  // as script has it; the object itself tells it from an equal one
        CallTrail places;
    };
    void addRunningCalls(const Interpreter& script, CallTrail& places) const;
    const Way* wayOf(const Variable& text) const;

    const Foot* foot_ = nullptr;

    Way last_;
    std::array<Way, 4> caught_;  // the latest that script caught
    std::size_t nextCaught_ = 0;
    Way again_;  // what is about to be raised once more
};

}  // namespace kelmora
