#include <iostream>

#include "tool/bytecode_dump.h"
#include "tool/guest_tool.h"
#include "tool/source_text.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"

namespace kelmora {
namespace {

// The image names its source by the file's name alone, so that it does not depend on where it was built.
int compileFile(ToolContext& tool, std::span<const std::string> words) {
    constexpr ToolOption compileOptions[] = {{"-o", true}};
    const ToolOptions options(words, compileOptions);
    const auto target = options.value("-o");
    if (options.words().size() != 1 || !target) throw UsageError("compile wants FILE -o IMAGE");
    const std::string& path = options.words()[0];
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    Runtime& runtime = tool.runtime;
    if (const GuestTool* guest = guestToolForSource(path)) {
        const std::string source = readSource(path);
        runtime.engine.nativeStack().markBase();
        const auto image =
            withGuestReports(*guest, name, source, [&] { return guest->compile(runtime, source, name); });
        if (!runtime.engine.host().replaceFile(*target, image))
            throw std::runtime_error("failed to write file: " + *target);
    } else {
        VesperScript::saveBytecode(runtime.engine.compileToBytecode(readSource(path), name), *target);
    }
    return 0;
}

int dumpImage(ToolContext&, std::span<const std::string> words) {
    const ToolOptions options(words, {});
    if (options.words().size() != 1) throw UsageError("dump wants one image");
    const std::string& path = options.words()[0];
    const std::string content = readSource(path);
    if (const GuestTool* guest = guestToolForImage(content)) {
        guest->dump(content, std::cout);
    } else {
        dumpBytecode(VesperScript::loadBytecode(path), content.size(), std::cout);
    }
    return 0;
}

}  // namespace

extern const ToolCommand compileCommand{
    "compile", "FILE -o IMAGE", "compile a script to a bytecode image",
    "The image names its source by the file's name alone, so that the same source gives the same bytes\n"
    "wherever it stands.\n",
    compileFile};

extern const ToolCommand dumpCommand{"dump", "IMAGE", "show what an image holds",
                                     "Prints the tables and instructions of an image as text.\n", dumpImage};

}  // namespace kelmora
