#pragma once

#include <cstdlib>

namespace kelmora {

// Of this process. A null value takes the variable away.
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

}  // namespace kelmora
