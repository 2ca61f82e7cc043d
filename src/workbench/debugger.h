#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "script/statement_watcher.h"
#include "script/variable.h"

namespace kelmora {

struct Breakpoint {
    std::uint32_t line = 0;  // from 1
    std::string condition;   // an expression; none stops always, and so does one that fails
};

enum class StopReason : std::uint8_t { Entry, Step, Breakpoint, Pause };
enum class Resume : std::uint8_t { Continue, StepIn, StepOver, StepOut };

// Breakpoints and steps over running script. It stands in front of statements; what is done there is its
// owner's affair.
class Debugger : public StatementWatcher {
public:
    // Gives how to go on. May change breakpoints.
    using OnStop = std::function<Resume(Interpreter&, StopReason)>;
    // In front of every statement, stopped at or not: whether a pause is wanted.
    using WantsPause = std::function<bool()>;

    Debugger(bool stopsOnEntry, OnStop onStop, WantsPause wantsPause);

    // In place of those that the source had. Paths are compared by their last parts where one is relative.
    void setBreakpoints(const std::string& path, const std::vector<Breakpoint>& breakpoints);

    // Nothing stops in this source.
    void hideSource(const std::string& path);

    void beforeStatement(Interpreter& script) override;

private:
    struct Placed {
        std::string path;
        std::string condition;
    };

    bool isAtBreakpoint(Interpreter& script) const;
    bool hasStepped(const Interpreter& script) const;

    OnStop onStop_;
    WantsPause wantsPause_;
    std::string hidden_;
    std::unordered_map<std::uint32_t, std::vector<Placed>> breakpoints_;  // by line
    bool isEntering_;
    bool isPausing_ = false;
    Resume resume_ = Resume::Continue;
    std::uint32_t stepDepth_ = 0;  // calls around the statement that was stopped at
    bool stepInTurn_ = false;      // it was a coroutine's
};

// The lines, from 1, that have a statement to stop at.
std::vector<std::uint32_t> statementLines(const std::string& source);

// The value of an expression or statement, with the names that the running statement sees. Raises its
// failure.
Variable evaluateHere(Interpreter& script, const std::string& source);

}  // namespace kelmora
