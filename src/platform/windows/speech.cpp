#include "platform/speech.h"

#include <string>

#include "platform/speech_text.h"
#include "platform/windows/child_process.h"

namespace kelmora {
namespace {

// A line from its input is a language and words in base 64. 19: without waiting, in the place of what is
// still being said, and not as markup. A language without a voice keeps the voice there is.
constexpr const char* speakerScript =
    "$ErrorActionPreference='Stop';"
    "$v=New-Object -ComObject SAPI.SpVoice;"
    "while($null -ne ($l=[Console]::In.ReadLine())){"
    "$p=$l.Split(' ');"
    "try{$c=[Globalization.CultureInfo]::CreateSpecificCulture($p[0]).LCID.ToString('x');"
    "$m=$v.GetVoices('Language='+$c);if($m.Count -gt 0){$v.Voice=$m.Item(0)}}catch{};"
    "[void]$v.Speak([Text.Encoding]::UTF8.GetString([Convert]::FromBase64String($p[1])),19)}";
constexpr DWORD pipeSize = 1 << 16;

std::string powerShell() {
    char folder[MAX_PATH];
    const UINT length = GetSystemDirectoryA(folder, MAX_PATH);
    return std::string(folder, length < MAX_PATH ? length : 0) + "\\WindowsPowerShell\\v1.0\\powershell.exe";
}

// One process for all words, since it takes long to start. It ends with the pipe to it.
class Speaker {
public:
    bool say(const std::string& line, const std::string& language) {
        if (!pipe_ && line.empty()) return true;
        if (ended()) {
            pipe_ = Handle();
            process_ = Handle();
            return false;
        }
        if (!pipe_ && !start()) return false;
        const std::string words = (language.empty() ? "-" : language) + " " + base64(line) + "\r\n";
        DWORD written = 0;
        return WriteFile(pipe_.get(), words.data(), static_cast<DWORD>(words.size()), &written, nullptr) &&
               written == words.size();
    }

private:
    bool ended() const { return process_ && WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0; }

    bool start() {
        Handle ours;
        Handle theirs;
        DWORD mode = PIPE_NOWAIT;  // a full pipe is a failure at once
        if (!openPipe(true, ours, theirs, pipeSize) ||
            !SetNamedPipeHandleState(ours.get(), &mode, nullptr, nullptr))
            return false;
        const std::string program = powerShell();
        process_ = startChild(program.c_str(),
                              "\"" + program +
                                  "\" -NoLogo -NoProfile -NonInteractive -InputFormat None -Command \"" +
                                  speakerScript + "\"",
                              theirs.get(), input);
        if (process_) pipe_ = std::move(ours);
        return static_cast<bool>(process_);
    }

    Handle process_;
    Handle pipe_;
};

}  // namespace
}  // namespace kelmora

bool vh_speak(std::string_view text, std::string_view language) {
    static kelmora::Speaker speaker;
    return speaker.say(kelmora::speechLine(text), std::string(kelmora::speechLanguage(language)));
}
