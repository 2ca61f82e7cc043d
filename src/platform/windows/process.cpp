#include "platform/process.h"

#include <fcntl.h>
#include <io.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/windows/handle.h"

namespace {

using kelmora::Handle;

std::unordered_map<std::FILE*, Handle> gPipeProcesses;

enum StandardHandle : std::size_t { input, output, errors };

SECURITY_ATTRIBUTES inheritable() {
    return {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
}

// Only the child's end is inherited: an end of ours in some other child would keep the pipe from closing.
bool openPipe(bool writing, Handle& ours, Handle& theirs) {
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    SECURITY_ATTRIBUTES attributes = inheritable();
    if (!CreatePipe(&readEnd, &writeEnd, &attributes, 0)) return false;
    ours = Handle(writing ? writeEnd : readEnd);
    theirs = Handle(writing ? readEnd : writeEnd);
    return SetHandleInformation(ours.get(), HANDLE_FLAG_INHERIT, 0) != 0;
}

Handle openNothing() {
    SECURITY_ATTRIBUTES attributes = inheritable();
    return Handle(CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              &attributes, OPEN_EXISTING, 0, nullptr));
}

std::string commandLine(const char* command) {
    const char* interpreter = std::getenv("COMSPEC");
    if (!interpreter) return std::string("cmd.exe /c ") + command;
    return "\"" + std::string(interpreter) + "\" /c " + command;
}

// Runs the command with `pipeEnd` as its standard handle `pipeHandle`. The process, or nothing.
Handle startShell(const char* command, HANDLE pipeEnd, StandardHandle pipeHandle) {
    const Handle nothing = openNothing();
    if (!nothing) return Handle();
    std::array<HANDLE, 3> standard{nothing.get(), nothing.get(), nothing.get()};
    standard[pipeHandle] = pipeEnd;
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = standard[input];
    start.hStdOutput = standard[output];
    start.hStdError = standard[errors];

    std::string line = commandLine(command);
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                        &start, &process))
        return Handle();
    CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

// The stream owns the handle from here on, also when it cannot be opened.
std::FILE* openStream(Handle handle, bool writing) {
    const auto value = reinterpret_cast<std::intptr_t>(handle.get());
    const int descriptor = _open_osfhandle(value, writing ? 0 : _O_RDONLY);
    if (descriptor < 0) return nullptr;
    handle.release();
    std::FILE* stream = _fdopen(descriptor, writing ? "wb" : "rb");
    if (!stream) _close(descriptor);
    return stream;
}

int waitFor(const Handle& process) {
    DWORD exitCode = 0;
    WaitForSingleObject(process.get(), INFINITE);
    return GetExitCodeProcess(process.get(), &exitCode) ? static_cast<int>(exitCode) : -1;
}

}  // namespace

std::FILE* vh_windows_popen(const char* command, const char* mode) {
    if (!command) return nullptr;
    const bool writing = mode && mode[0] == 'w';
    Handle ours;
    Handle theirs;
    if (!openPipe(writing, ours, theirs)) return nullptr;
    std::FILE* stream = openStream(std::move(ours), writing);
    if (!stream) return nullptr;
    Handle process = startShell(command, theirs.get(), writing ? input : output);
    if (!process) {
        std::fclose(stream);
        return nullptr;
    }
    gPipeProcesses[stream] = std::move(process);
    return stream;
}

int vh_windows_pclose(std::FILE* stream) {
    if (!stream) return -1;
    const auto found = gPipeProcesses.find(stream);
    if (found == gPipeProcesses.end()) return std::fclose(stream);
    const Handle process = std::move(found->second);
    gPipeProcesses.erase(found);
    std::fclose(stream);
    return waitFor(process);
}
