#include "platform/linux/spawn.h"

#include <fcntl.h>
#include <signal.h>

namespace kelmora {

SpawnSettings::SpawnSettings() {
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
}

SpawnSettings::~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
}

bool SpawnSettings::connect(int handle, int descriptor) {
    bool ready = true;
    for (int each = STDIN_FILENO; each <= STDERR_FILENO; ++each)
        ready = ready && 0 == (each == handle ? posix_spawn_file_actions_adddup2(&actions, descriptor, each)
                                              : posix_spawn_file_actions_addopen(&actions, each, "/dev/null",
                                                                                 O_RDWR, 0));
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    return ready && posix_spawnattr_setsigdefault(&attributes, &defaults) == 0 &&
           posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF) == 0;
}

}  // namespace kelmora
