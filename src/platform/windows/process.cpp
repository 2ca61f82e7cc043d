#include "platform/process.h"

#include <fcntl.h>
#include <io.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/windows/child_process.h"

namespace {

using kelmora::Handle;
using kelmora::openPipe;
using kelmora::startChild;

std::unordered_map<std::FILE*, Handle> gPipeProcesses;

std::string commandLine(const char* command) {
    const char* interpreter = std::getenv("COMSPEC");
    if (!interpreter) return std::string("cmd.exe /c ") + command;
    return "\"" + std::string(interpreter) + "\" /c " + command;
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
    Handle process =
        startChild(nullptr, commandLine(command), theirs.get(), writing ? kelmora::input : kelmora::output);
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
