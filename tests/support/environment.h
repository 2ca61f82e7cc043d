#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "platform/environment.h"

namespace kelmora {

// A variable that has another value, or none, for a while.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        setEnvironment(name, value);
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment() { setEnvironment(name_, old_ ? old_->c_str() : nullptr); }

private:
    const char* name_;
    std::optional<std::string> old_;
};

}  // namespace kelmora
