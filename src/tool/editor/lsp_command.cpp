#include <iostream>

#include "platform/system.h"
#include "tool/document_texts.h"
#include "tool/editor/language_server.h"
#include "tool/game_check.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"

namespace kelmora {
namespace {

// What several clients add by themselves.
constexpr ToolOption lspOptions[] = {{"--stdio"}};

int serveEditor(ToolContext& tool, std::span<const std::string> words) {
    const ToolOptions options(words, lspOptions);
    if (!options.words().empty()) throw UsageError("lsp takes no words");
    registerForCheck(tool.runtime);
    std::ios::sync_with_stdio(false);
    platform_read_stdin_as_bytes();
    MessageReader reader(std::cin);
    LanguageServer server(tool.runtime, wordBook(),
                          [](const Json& message) { writeMessage(std::cout, message); });
    while (!server.isOver()) {
        const Received received = reader.read();
        if (received.kind == ReceivedKind::End) break;
        if (received.kind == ReceivedKind::Broken) {
            server.refuse(received.text);
        } else {
            server.handle(received.text);
        }
        if (!reader.hasMore()) server.idle();
    }
    return server.exitCode();
}

}  // namespace

extern const ToolCommand lspCommand{
    "lsp", "", "serve an editor by the language server protocol, on standard input and output",
    "Started by editors; docs/editors.md says how to set them up.\n", serveEditor};

}  // namespace kelmora
