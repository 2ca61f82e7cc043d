#include "tool/game_check.h"

#include <algorithm>

#include "bindings/modules.h"
#include "host/boot_image.h"
#include "host/registration.h"
#include "tool/game_folder.h"
#include "tool/guest_tool.h"

namespace kelmora {

namespace fs = std::filesystem;

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

std::shared_ptr<const AssetFiles> assetsOf(const fs::path& game) {
    std::vector<std::string> paths;
    const auto take = [&](const fs::path& folder, const std::string& name) {
        std::error_code ignored;
        for (const auto& entry : fs::recursive_directory_iterator(folder, ignored))
            if (entry.is_regular_file(ignored))
                paths.push_back(name + "/" + entry.path().lexically_relative(folder).generic_string());
    };
    take(game / "Resources", "Resources");
    take(game / "Libraries", "Libraries");
    std::erase_if(paths, [](const std::string& path) { return path.starts_with("Resources/volatile/"); });
    for (const fs::path& library : librariesOf(game))
        take(library, "Libraries/" + library.filename().string());
    for (const fs::path font : fontsOf(game))
        paths.push_back("Resources/package/fonts/" + font.filename().string());
    return std::make_shared<const AssetFiles>(std::move(paths));
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
