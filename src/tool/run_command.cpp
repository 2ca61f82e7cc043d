#include "tool/run_command.h"

#include "host/registration.h"
#include "tool/guest_tool.h"
#include "tool/source_text.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"

namespace kelmora {
namespace {

int runGuestFile(Runtime& runtime, const GuestTool& guest, std::span<const std::string> words,
                 const std::string& content, bool isImage) {
    registerFunctions(runtime);
    runtime.engine.nativeStack().markBase();
    return withGuestReports(guest, words[0], content,
                            [&] { return guest.run(runtime, words[0], words.subspan(1), isImage); });
}

int run(ToolContext& tool, std::span<const std::string> words) {
    if (words.empty()) throw UsageError("run wants a file");
    const ToolOptions options(words.first(1), {});
    return runFile(tool.runtime, words);
}

}  // namespace

int runFile(Runtime& runtime, std::span<const std::string> words) {
    const std::string content = readSource(words[0]);
    if (const GuestTool* guest = guestToolForImage(content))
        return runGuestFile(runtime, *guest, words, content, true);
    if (const GuestTool* guest = guestToolForSource(words[0]))
        return runGuestFile(runtime, *guest, words, content, false);
    std::vector<Variable> arguments;
    for (const std::string& word : words.subspan(1)) arguments.push_back(Variable::text(word));
    registerFunctions(runtime);
    runtime.engine.pushVariable("arguments", Variable::array(std::move(arguments)));
    if (content.starts_with("VSBC")) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(content.data());
        runtime.engine.runBytecode(VesperScript::deserialiseBytecode({bytes, content.size()}, words[0]));
    } else {
        runtime.engine.runBytecode(runtime.engine.compileToBytecode(content, words[0]));
    }
    return 0;
}

extern const ToolCommand runCommand{
    "run", "FILE [ARGUMENT...]", "run a script; arguments are in the global array `arguments`",
    "Runs a source or an image of any of the three languages. Sources of the guest languages are told by\n"
    "their names (.lua, .rwby), images by their first bytes. The exit code is 1 when the script fails.\n",
    run};

}  // namespace kelmora
