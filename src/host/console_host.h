#pragma once

#include "base/host_services.h"

namespace kelmora {

// Scripts print to standard output and run commands in the system's shell.
class ConsoleHost : public HostServices {
public:
    ConsoleHost();
    void print(std::string_view text) override;
    void printError(std::string_view text) override;
    void flush() override;
    bool showsTrueColour() const override;
    std::FILE* openProcess(const std::string& command, const std::string& mode) override;
    int closeProcess(std::FILE* stream) override;
    [[nodiscard]] bool replaceFile(const std::string& path, std::span<const unsigned char> content) override;

private:
    bool flushes_;  // a person is reading along
};

}  // namespace kelmora
