#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "bindings/runtime.h"
#include "host/console_host.h"

namespace kelmora {

// What a command of the authors' tool works with. The runtime has nothing registered yet.
struct ToolContext {
    ConsoleHost& host;
    Runtime& runtime;
};

// One command. Each stands in the file that has its work, and is named in commands.cpp.
struct ToolCommand {
    std::string_view name;
    std::string_view arguments;  // as its usage shows them
    std::string_view summary;
    std::string_view details;  // lines
    // The exit code. Raises UsageError for words that make no sense.
    int (*run)(ToolContext& tool, std::span<const std::string> words);
};

}  // namespace kelmora
