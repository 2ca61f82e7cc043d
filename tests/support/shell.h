#pragma once

#include <cstdio>
#include <string>

#include "shim/shim.h"

namespace kelmora {

struct ShellOutcome {
    std::string text;  // with line feeds alone as line ends
    int exitCode = -1;
};

inline std::string readToEnd(std::FILE* stream) {
    std::string text;
    for (int byte = std::fgetc(stream); byte != EOF; byte = std::fgetc(stream))
        if (byte != '\r') text += static_cast<char>(byte);
    return text;
}

inline ShellOutcome runInShell(const std::string& command) {
    ShellOutcome outcome;
    std::FILE* pipe = vh_windows_popen(command.c_str(), "r");
    if (!pipe) return outcome;
    outcome.text = readToEnd(pipe);
    outcome.exitCode = vh_windows_pclose(pipe);
    return outcome;
}

inline std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

// Runs a program of ours and takes its errors with its output. Windows' shell takes a pair of quotes off a
// command that begins with one.
inline ShellOutcome runProgram(const std::string& path, const std::string& arguments = "") {
    const std::string command = quoted(path) + " " + arguments + " 2>&1";
    return runInShell(platform_is_windows() ? quoted(command) : command);
}

}  // namespace kelmora
