#pragma once

#include <spawn.h>
#include <unistd.h>

#include <utility>

namespace kelmora {

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

// How a process is started: what happens to its handles and signals.
class SpawnSettings {
public:
    SpawnSettings();
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings();

    // The standard handle `handle` is `descriptor`; all other standard handles lead nowhere. A process that
    // writes to a closed pipe ends, as is usual. False where the system refuses.
    [[nodiscard]] bool connect(int handle, int descriptor);

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

}  // namespace kelmora
