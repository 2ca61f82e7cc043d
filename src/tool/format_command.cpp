#include <iostream>

#include "tool/source_files.h"
#include "tool/source_text.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"
#include "workbench/formatter.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

constexpr ToolOption formatOptions[] = {{"--check"}};

std::vector<std::string> scriptsNamed(const std::vector<std::string>& paths) {
    std::vector<std::string> found;
    for (const std::string& path : paths) {
        if (!fs::is_directory(path)) {
            if (!isVesperScript(path)) throw UsageError("format knows VesperScript alone: " + path);
            found.push_back(path);
            continue;
        }
        for (std::string& below : sourcesBelow(path))
            if (isVesperScript(below)) found.push_back(std::move(below));
    }
    return found;
}

// False when the script could not be formatted, or is to be and only a check was asked for.
bool formatScript(HostServices& host, const std::string& path, bool onlyChecks) {
    const std::string source = readSource(path);
    const FormattedSource made = formatSource(source);
    if (made.fault) {
        std::cerr << path << ':' << made.fault->line + 1 << ": left as it is: " << made.fault->message
                  << '\n';
        return false;
    }
    if (made.text == source) return true;
    if (onlyChecks) {
        std::cerr << path << ": would be formatted\n";
        return false;
    }
    const auto* bytes = reinterpret_cast<const unsigned char*>(made.text.data());
    if (!host.replaceFile(path, {bytes, made.text.size()}))
        throw std::runtime_error("Failed to write script file: " + path);
    std::cout << path << ": formatted\n";
    return true;
}

int formatScripts(ToolContext& tool, std::span<const std::string> words) {
    const ToolOptions options(words, formatOptions);
    if (options.words().empty()) throw UsageError("format wants files or folders");
    bool isFine = true;
    for (const std::string& path : scriptsNamed(options.words()))
        isFine = formatScript(tool.host, path, options.has("--check")) && isFine;
    return isFine ? 0 : 1;
}

}  // namespace

extern const ToolCommand formatCommand{
    "format", "[--check] FILE|FOLDER...", "set the indentation and the blanks of scripts",
    "Four blanks for each block or bracket that is open, one around operators and behind commas, none "
    "inside\n"
    "brackets. Strings, comments, empty lines and the meaning stay. A file is written when it changes; one "
    "with "
    "a\n"
    "string, a bracket or a block without its end is left as it is. With --check nothing is written, and the "
    "exit\n"
    "code is 1 when something would be. A folder stands for all VesperScript in it.\n",
    formatScripts};

}  // namespace kelmora
