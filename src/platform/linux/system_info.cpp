#include <pthread.h>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "platform/machine_facts.h"
#include "platform/system.h"

namespace kelmora {

std::string executableFile() {
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

std::string systemVersion() {
    utsname names{};
    return uname(&names) == 0 ? names.release : "";
}

std::string processorModel() {
    std::ifstream file("/proc/cpuinfo");
    std::string line;
    while (std::getline(file, line))
        if (line.starts_with("model name")) return line.substr(line.find(':') + 1);
    return {};
}

std::string temporaryFolder() {
    const char* chosen = std::getenv("TMPDIR");
    std::string folder = chosen && *chosen ? chosen : "/tmp/";
    if (folder.back() != '/') folder += '/';
    return folder;
}

std::string userDataFolder() {
    const char* chosen = std::getenv("XDG_DATA_HOME");
    if (chosen && *chosen == '/') return std::string(chosen) + "/";
    const char* home = std::getenv("HOME");
    return home && *home ? std::string(home) + "/.local/share/" : "";
}

}  // namespace kelmora

bool platform_is_windows() {
    return false;
}

void platform_read_stdin_as_bytes() {}

bool platform_show_message(const char*, const char*) {
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

void platform_raise_thread_priority() {
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), -1);
}
