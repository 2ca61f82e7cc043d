#pragma once

#include <cstdio>
#include <string>

#include "base/host_services.h"
#include "base/whole_file.h"

namespace kelmora {

// Keeps what a script prints. Every process it is asked for is silent.
class CaptureHost : public HostServices {
public:
    void print(std::string_view text) override { output += text; }
    void printError(std::string_view text) override { errors += text; }
    void flush() override {}
    std::FILE* openProcess(const std::string&, const std::string&) override { return std::tmpfile(); }
    int closeProcess(std::FILE* stream) override { return std::fclose(stream); }
    bool replaceFile(const std::string& path, std::span<const unsigned char> content) override {
        return writeWholeFileBytes(path, content);
    }

    std::string output;
    std::string errors;
};

}  // namespace kelmora
