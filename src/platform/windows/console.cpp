#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "platform/system.h"
#include "platform/windows/windows_api.h"

namespace {

bool leadsSomewhere(DWORD standardHandle) {
    const HANDLE handle = GetStdHandle(standardHandle);
    return handle && handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

void reopenOnConsole(std::FILE* stream, const char* console, const char* mode) {
    if (std::freopen(console, mode, stream)) std::setvbuf(stream, nullptr, _IONBF, 0);
}

// An executable with windows starts without a console. Started from one, it writes there; what was redirected
// keeps its target.
struct ConsoleAttachment {
    ConsoleAttachment() {
        const bool input = leadsSomewhere(STD_INPUT_HANDLE);
        const bool output = leadsSomewhere(STD_OUTPUT_HANDLE);
        const bool errors = leadsSomewhere(STD_ERROR_HANDLE);
        if (AttachConsole(ATTACH_PARENT_PROCESS)) {
            if (!input) reopenOnConsole(stdin, "CONIN$", "r");
            if (!output) reopenOnConsole(stdout, "CONOUT$", "w");
            if (!errors) reopenOnConsole(stderr, "CONOUT$", "w");
        }
        // Lines end in a single line feed, as in every other file that is written.
        _setmode(_fileno(stdout), _O_BINARY);
        _setmode(_fileno(stderr), _O_BINARY);
    }
};

const ConsoleAttachment attachment;

}  // namespace

void platform_read_stdin_as_bytes() {
    _setmode(_fileno(stdin), _O_BINARY);
}

bool platform_stdout_is_terminal() {
    return _isatty(_fileno(stdout)) != 0;
}
