#include "host/console_host.h"

#include <cstdlib>

#include "base/kept_place.h"
#include "shim/shim.h"

namespace kelmora {

ConsoleHost::ConsoleHost() : flushes_(platform_stdout_is_terminal()) {}

void ConsoleHost::print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    if (flushes_) std::fflush(stdout);
}

void ConsoleHost::printError(std::string_view text) {
    std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stderr);
}

void ConsoleHost::flush() {
    std::fflush(stdout);
}

bool ConsoleHost::showsTrueColour() const {
    const char* const unwanted = std::getenv("NO_COLOR");
    const char* const colours = std::getenv("COLORTERM");
    if (!flushes_ || colours == nullptr || (unwanted && *unwanted)) return false;
    return std::string_view(colours) == "truecolor" || std::string_view(colours) == "24bit";
}

std::FILE* ConsoleHost::openProcess(const std::string& command, const std::string& mode) {
    std::fflush(stdout);
    return vh_windows_popen(command.c_str(), mode.c_str());
}

bool ConsoleHost::replaceFile(const std::string& path, std::span<const unsigned char> content) {
    return platform_replace_file(placeOf(path).c_str(), content.data(), content.size());
}

int ConsoleHost::closeProcess(std::FILE* stream) {
    return vh_windows_pclose(stream);
}

}  // namespace kelmora
