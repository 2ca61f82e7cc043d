#pragma once

#include <string>

#include "guest/traced_error.h"
#include "lua/value.h"

namespace vesper::lua {

// A failure of a running program; the value is what pcall hands on. Texts have their place in front.
class RuntimeError : public kelmora::guest::TracedGuestError {
public:
    explicit RuntimeError(Value value, kelmora::CallTrail trail = {});

    const Value& value() const { return value_; }

private:
    Value value_;
};

// Ends a run past every pcall. Not a std::exception, so that nothing takes it for a failure.
struct StopRun {
    bool isExit = false;  // os.exit; else the step limit
    int exitCode = 0;
    std::string error;
};

}  // namespace vesper::lua
