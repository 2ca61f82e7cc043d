#pragma once

#include <cstdio>
#include <span>
#include <string>
#include <string_view>

namespace kelmora {

// What the interpreter asks of the world around it. It does no output and starts no process of its own.
class ScriptHost {
public:
    virtual ~ScriptHost() = default;

    virtual void print(std::string_view text) = 0;
    virtual void flush() = 0;
    // Null when the command cannot be started.
    virtual std::FILE* openProcess(const std::string& command, const std::string& mode) = 0;
    // Replaces a file's content as a whole: a failure on the way leaves the old file as it was.
    virtual bool replaceFile(const std::string& path, std::span<const unsigned char> content) = 0;
    // Waits for the process; its exit code.
    virtual int closeProcess(std::FILE* stream) = 0;
};

}  // namespace kelmora
