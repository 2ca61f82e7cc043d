#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace kelmora {

// A null value takes the variable away.
inline void setEnvironment(const char* name, const char* value) {
#ifdef _WIN32
    _putenv_s(name, value ? value : "");
#else
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
#endif
}

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
