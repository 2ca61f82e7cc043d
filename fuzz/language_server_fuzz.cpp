#include <cstdlib>
#include <sstream>
#include <string>

#include "support/capture_host.h"
#include "tool/document_texts.h"
#include "tool/editor/language_server.h"
#include "tool/game_check.h"

// A session with an editor, as it comes over the pipe.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static kelmora::CaptureHost host;
    static kelmora::Runtime runtime(host);
    static const bool isReady = (kelmora::registerForCheck(runtime), true);
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    kelmora::MessageReader reader(in);
    std::ostringstream out;
    kelmora::LanguageServer server(runtime, kelmora::wordBook(), [&](const kelmora::Json& message) {
        kelmora::writeMessage(out, message);
    });
    for (auto received = reader.read(); isReady && received.kind != kelmora::ReceivedKind::End;
         received = reader.read()) {
        if (received.kind == kelmora::ReceivedKind::Message) server.handle(received.text);
        server.idle();
    }
    return 0;
}
