#pragma once

#include <cstdio>
#include <string>

#include "script/script_host.h"

namespace kelmora {

// Keeps what a script prints. It starts no processes.
class CaptureHost : public ScriptHost {
public:
    void print(std::string_view text) override { output += text; }
    void flush() override {}
    std::FILE* openProcess(const std::string&, const std::string&) override { return nullptr; }
    int closeProcess(std::FILE*) override { return -1; }

    std::string output;
};

}  // namespace kelmora
