#include "platform/speech.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>

#include <cerrno>
#include <string>

#include "platform/linux/spawn.h"
#include "platform/speech_text.h"

extern char** environ;

namespace kelmora {
namespace {

// A file in memory at its beginning: a speaker that is slow to read it keeps nobody waiting.
Descriptor fileOf(const std::string& text) {
    Descriptor file(memfd_create("words", MFD_CLOEXEC));
    if (file.get() >= 0 &&
        (write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()) ||
         lseek(file.get(), 0, SEEK_SET) != 0))
        return Descriptor();
    return file;
}

// One spd-say at a time: it hands the words to the speech service and ends.
class Speaker {
public:
    bool say(const std::string& line, const std::string& language) {
        const bool arrived = lastOneArrived();
        if (line.empty() && !begun_) return true;
        begun_ = true;
        return start(line, language) && arrived;
    }

private:
    // Ends the one before, so that its words cannot come after the new ones.
    bool lastOneArrived() {
        if (child_ < 0) return true;
        int status = 0;
        pid_t ended = waitpid(child_, &status, WNOHANG);
        const bool arrived = ended != child_ || (WIFEXITED(status) && WEXITSTATUS(status) == 0);
        if (ended == 0) {
            kill(child_, SIGKILL);
            while (waitpid(child_, &status, 0) < 0 && errno == EINTR) continue;
        }
        child_ = -1;
        return arrived;
    }

    bool start(const std::string& line, const std::string& language) {
        // The blank keeps words that look like one of spd-say's own commands from being taken for one.
        const Descriptor words = fileOf(line.empty() ? "" : " " + line + "\n");
        SpawnSettings settings;
        if (words.get() < 0 || !settings.connect(STDIN_FILENO, words.get())) return false;
        std::string arguments[] = {"spd-say", "--cancel", "--pipe-mode", "--language", language};
        char* list[] = {arguments[0].data(), arguments[1].data(),
                        arguments[2].data(), language.empty() ? nullptr : arguments[3].data(),
                        arguments[4].data(), nullptr};
        if (posix_spawnp(&child_, "spd-say", &settings.actions, &settings.attributes, list, environ) == 0)
            return true;
        child_ = -1;
        return false;
    }

    pid_t child_ = -1;
    bool begun_ = false;
};

}  // namespace
}  // namespace kelmora

bool vh_speak(std::string_view text, std::string_view language) {
    static kelmora::Speaker speaker;
    return speaker.say(kelmora::speechLine(text), std::string(kelmora::speechLanguage(language)));
}
