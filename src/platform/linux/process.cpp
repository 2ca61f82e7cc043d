#include "platform/process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <unordered_map>

#include "platform/linux/spawn.h"

extern char** environ;

namespace {

using kelmora::Descriptor;
using kelmora::SpawnSettings;

std::unordered_map<std::FILE*, pid_t> gPipeProcesses;

// Above the standard handles, so that setting those up in the child cannot overwrite the pipe.
Descriptor movedUp(int number) {
    const Descriptor low(number);
    return Descriptor(fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

bool openPipe(Descriptor& readEnd, Descriptor& writeEnd) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    readEnd = movedUp(ends[0]);
    writeEnd = movedUp(ends[1]);
    return readEnd.get() >= 0 && writeEnd.get() >= 0;
}

// Runs the command with `pipeEnd` as its standard handle `pipeHandle`. Gives its process, or -1.
pid_t spawnShell(const char* command, int pipeEnd, int pipeHandle) {
    SpawnSettings settings;
    if (!settings.connect(pipeHandle, pipeEnd)) return -1;

    char shell[] = "sh";
    char option[] = "-c";
    char* const arguments[] = {shell, option, const_cast<char*>(command), nullptr};
    pid_t process = -1;
    const int error =
        posix_spawn(&process, "/bin/sh", &settings.actions, &settings.attributes, arguments, environ);
    return error == 0 ? process : -1;
}

int waitFor(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0)
        if (errno != EINTR) return -1;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// Writing to a command that has already ended is a failed write, not the end of the game.
void ignoreBrokenPipes() {
    struct sigaction current {};
    if (sigaction(SIGPIPE, nullptr, &current) == 0 && current.sa_handler == SIG_DFL) signal(SIGPIPE, SIG_IGN);
}

}  // namespace

std::FILE* vh_windows_popen(const char* command, const char* mode) {
    if (!command) return nullptr;
    const bool writing = mode && mode[0] == 'w';
    Descriptor readEnd;
    Descriptor writeEnd;
    if (!openPipe(readEnd, writeEnd)) return nullptr;
    Descriptor& ours = writing ? writeEnd : readEnd;
    const Descriptor& theirs = writing ? readEnd : writeEnd;

    std::FILE* stream = fdopen(ours.get(), writing ? "w" : "r");
    if (!stream) return nullptr;
    ours.release();
    if (writing) ignoreBrokenPipes();
    const pid_t process = spawnShell(command, theirs.get(), writing ? STDIN_FILENO : STDOUT_FILENO);
    if (process < 0) {
        std::fclose(stream);
        return nullptr;
    }
    gPipeProcesses[stream] = process;
    return stream;
}

int vh_windows_pclose(std::FILE* stream) {
    if (!stream) return -1;
    const auto found = gPipeProcesses.find(stream);
    if (found == gPipeProcesses.end()) return std::fclose(stream);
    const pid_t process = found->second;
    gPipeProcesses.erase(found);
    std::fclose(stream);
    return waitFor(process);
}
