#include "platform/process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <unordered_map>
#include <utility>

extern char** environ;

namespace {

std::unordered_map<std::FILE*, pid_t> gPipeProcesses;

// A file descriptor that closes with its scope.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    int get() const { return number_; }
    int release() { return std::exchange(number_, -1); }

private:
    int number_;
};

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

class SpawnSettings {
public:
    SpawnSettings() {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

// Runs the command with `pipeEnd` as its standard handle `pipeHandle`. Gives its process, or -1.
pid_t spawnShell(const char* command, int pipeEnd, int pipeHandle) {
    SpawnSettings settings;
    bool ready = true;
    for (int handle = STDIN_FILENO; handle <= STDERR_FILENO; ++handle)
        ready = ready && 0 == (handle == pipeHandle
                                   ? posix_spawn_file_actions_adddup2(&settings.actions, pipeEnd, handle)
                                   : posix_spawn_file_actions_addopen(&settings.actions, handle, "/dev/null",
                                                                      O_RDWR, 0));
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    ready = ready && posix_spawnattr_setsigdefault(&settings.attributes, &defaults) == 0 &&
            posix_spawnattr_setflags(&settings.attributes, POSIX_SPAWN_SETSIGDEF) == 0;
    if (!ready) return -1;

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
