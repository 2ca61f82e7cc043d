#include "tool/game_check.h"

#include <algorithm>

#include "bindings/modules.h"
#include "host/boot_image.h"
#include "host/registration.h"
#include "tool/guest_tool.h"

namespace kelmora {
namespace {

Diagnostic guestDiagnostic(const std::string& path, const std::string& source, const std::string& error) {
    Diagnostic made;
    made.path = path;
    made.message = error;
    if (const auto failure = parseGuestFailure(error, path, source)) {
        made.message = failure->message;
        made.line = static_cast<std::uint32_t>(failure->line);
        made.column = static_cast<std::uint32_t>(std::max<std::size_t>(failure->column, 1));
        made.source = failure->source;
    }
    return made;
}

}  // namespace

void registerForCheck(Runtime& runtime) {
    registerFunctions(runtime);
    runtime.engine.pushVariable("Metal", makeModule("Metal", {metalBindings()}));
    runtime.engine.nativeStack().markBase();
}

std::string bootSource() {
    const std::span<const unsigned char> boot = bootText();
    return {boot.begin(), boot.end()};
}

std::vector<Diagnostic> checkGuest(Runtime& runtime, const std::string& path, const std::string& source) {
    const GuestTool* guest = guestToolForSource(path);
    if (!guest) return {};
    try {
        guest->compile(runtime, source, path);
    } catch (const std::exception& error) {
        return {guestDiagnostic(path, source, error.what())};
    }
    return {};
}

}  // namespace kelmora
