#pragma once

#include <cstdio>

// Runs a command in the system's shell. A mode that starts with "w" writes to its input, any other reads its
// output; its other standard handles lead nowhere. The stream is bytes. Null on failure.
std::FILE* vh_windows_popen(const char* command, const char* mode);
// Closes the stream, waits for the command and gives its exit code (128 and the signal's number if one ended
// it). A stream that vh_windows_popen did not open is just closed.
int vh_windows_pclose(std::FILE* stream);
