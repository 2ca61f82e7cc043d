#pragma once

#include <cstddef>
#include <string>

#include "platform/windows/handle.h"

namespace kelmora {

enum StandardHandle : std::size_t { input, output, errors };

// A pipe to or from a child. Only the child's end is inherited: an end of ours in some other child would keep
// the pipe from closing. `size` is a wish; 0 leaves it to the system.
bool openPipe(bool writing, Handle& ours, Handle& theirs, DWORD size = 0);

// Runs a command line with `pipeEnd` as its standard handle `pipeHandle`, the others leading nowhere, without
// a console window. The process, or nothing. A null `program` is looked for as the line's first word.
Handle startChild(const char* program, std::string line, HANDLE pipeEnd, StandardHandle pipeHandle);

}  // namespace kelmora
