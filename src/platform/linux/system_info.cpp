#include <pthread.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/shim.h"

namespace {

bool copyOut(std::string_view text, char* buffer, unsigned size) {
    if (!buffer || size == 0) return false;
    buffer[0] = '\0';
    if (text.empty() || text.size() >= size) return false;
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
    return true;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

std::string executablePath() {
    std::vector<char> path(256);
    for (;;) {
        const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) return {};
        if (static_cast<std::size_t>(length) < path.size())
            return {path.data(), static_cast<std::size_t>(length)};
        path.resize(path.size() * 2);
    }
}

std::string accountName() {
    std::vector<char> text(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, text.data(), text.size(), &found) == 0 && found && found->pw_name)
        return found->pw_name;
    const char* name = std::getenv("USER");
    return name ? name : "";
}

std::string platformName() {
    utsname names{};
    if (uname(&names) != 0) return {};
    return std::string(names.sysname) + " " + names.machine;
}

std::string processorModel() {
    std::ifstream file("/proc/cpuinfo");
    std::string line;
    while (std::getline(file, line)) {
        const std::size_t colon = line.find(':');
        if (colon != std::string::npos && trimmed(std::string_view(line).substr(0, colon)) == "model name")
            return std::string(trimmed(std::string_view(line).substr(colon + 1)));
    }
    return {};
}

}  // namespace

bool windows_executable_directory(char* buffer, unsigned size) {
    const std::string path = executablePath();
    return copyOut(std::string_view(path).substr(0, path.rfind('/') + 1), buffer, size);
}

bool windows_user_name(char* buffer, unsigned size) {
    return copyOut(trimmed(accountName()), buffer, size);
}

bool windows_platform_name(char* buffer, unsigned size) {
    return copyOut(platformName(), buffer, size);
}

bool windows_version_string(char* buffer, unsigned size) {
    utsname names{};
    return copyOut(uname(&names) == 0 ? names.release : "Unknown", buffer, size);
}

bool windows_processor_name(char* buffer, unsigned size) {
    const std::string model = processorModel();
    if (!model.empty()) return copyOut(model, buffer, size);
    const std::string platform = platformName();
    return copyOut(platform.empty() ? "Unknown" : "Unknown " + platform, buffer, size);
}

bool windows_temp_directory(char* buffer, unsigned size) {
    const char* chosen = std::getenv("TMPDIR");
    std::string directory = chosen && *chosen ? chosen : "/tmp/";
    if (directory.back() != '/') directory += '/';
    return copyOut(directory, buffer, size) || copyOut("./", buffer, size);
}

bool platform_is_windows() {
    return false;
}

bool platform_stdout_is_terminal() {
    return isatty(STDOUT_FILENO) == 1;
}

std::uintptr_t platform_stack_low_address() {
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) return 0;
    void* low = nullptr;
    std::size_t size = 0;
    const int error = pthread_attr_getstack(&attributes, &low, &size);
    pthread_attr_destroy(&attributes);
    return error == 0 ? reinterpret_cast<std::uintptr_t>(low) : 0;
}
