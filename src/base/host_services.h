#pragma once

#include <cstdio>
#include <span>
#include <string>
#include <string_view>

namespace kelmora {

// What the languages ask of the world around them. They do no output, open no file and start no process by
// themselves. All paths are taken as they are.
class HostServices {
public:
    virtual ~HostServices() = default;

    virtual void print(std::string_view text) = 0;
    virtual void printError(std::string_view text) = 0;
    virtual void flush() = 0;
    // Whether what is printed goes to a terminal that shows colours of 24 bits.
    virtual bool showsTrueColour() const { return false; }

    // Null when there is no such file, or it is a folder. The mode is the C library's.
    virtual std::FILE* openFile(const std::string& path, const std::string& mode);
    // Replaces a file's content as a whole: a failure on the way leaves the old file as it was.
    [[nodiscard]] virtual bool replaceFile(const std::string& path,
                                           std::span<const unsigned char> content) = 0;

    // Null when the command cannot be started.
    virtual std::FILE* openProcess(const std::string& command, const std::string& mode) = 0;
    // Waits for the process; its exit code.
    virtual int closeProcess(std::FILE* stream) = 0;
};

}  // namespace kelmora
