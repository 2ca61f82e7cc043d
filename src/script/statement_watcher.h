#pragma once

namespace kelmora {

struct Interpreter;

// Sees each statement before it runs, of all executors: what a debugger stands on. While one is set nothing
// runs at full speed.
class StatementWatcher {
public:
    StatementWatcher() = default;
    StatementWatcher(const StatementWatcher&) = delete;
    StatementWatcher& operator=(const StatementWatcher&) = delete;
    virtual ~StatementWatcher() = default;

    // It may look at everything, evaluate, and change variables. What it raises ends the script.
    virtual void beforeStatement(Interpreter& script) = 0;
};

}  // namespace kelmora
