#include "platform/windows/child_process.h"

#include <array>

namespace kelmora {
namespace {

SECURITY_ATTRIBUTES inheritable() {
    return {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
}

Handle openNothing() {
    SECURITY_ATTRIBUTES attributes = inheritable();
    return Handle(CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              &attributes, OPEN_EXISTING, 0, nullptr));
}

}  // namespace

bool openPipe(bool writing, Handle& ours, Handle& theirs, DWORD size) {
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    SECURITY_ATTRIBUTES attributes = inheritable();
    if (!CreatePipe(&readEnd, &writeEnd, &attributes, size)) return false;
    ours = Handle(writing ? writeEnd : readEnd);
    theirs = Handle(writing ? readEnd : writeEnd);
    return SetHandleInformation(ours.get(), HANDLE_FLAG_INHERIT, 0) != 0;
}

Handle startChild(const char* program, std::string line, HANDLE pipeEnd, StandardHandle pipeHandle) {
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

    PROCESS_INFORMATION process{};
    if (!CreateProcessA(program, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                        &start, &process))
        return Handle();
    CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

}  // namespace kelmora
