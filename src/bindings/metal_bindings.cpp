#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "bindings/image_arguments.h"
#include "bindings/modules.h"
#include "bindings/runtime.h"
#include "image/image_registry.h"
#include "script/binding.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

// spawnWindow(title, width, height): true when there is a window afterwards. An old one goes first.
Variable spawnWindow(const BindingCall& call) {
    Runtime& runtime = runtimeOf(call);
    call.require(3);
    const std::string title = call.text(0, "title");
    const std::int32_t width = call.integer(1, "width");
    const std::int32_t height = call.integer(2, "height");
    runtime.destroyWindow();
    runtime.windowTitle = title;
    runtime.window = vh_createWindow(title.c_str(), width, height);
    vh_restorePlace(runtime.window, runtime.windowPlacePath().c_str());
    vh_setScaling(runtime.window, runtime.scaling);
    return Variable::boolean(runtime.window != nullptr);
}

Variable renameWindow(const BindingCall& call) {
    Runtime& runtime = runtimeOf(call);
    runtime.windowTitle = call.text(0, "title");
    vh_setWindowTitle(runtime.window, runtime.windowTitle.c_str());
    return {};
}

Variable getName(const BindingCall& call) {
    Runtime& runtime = runtimeOf(call);
    const std::unique_ptr<char, decltype(&std::free)> title(vh_getWindowTitle(runtime.window), &std::free);
    return title ? Variable::text(title.get()) : Variable();
}

Variable renderImage(const BindingCall& call) {
    Runtime& runtime = runtimeOf(call);
    const PlushImage& image = imageArgument(call, 0, "image");
    if (runtime.window) vh_pushImage(runtime.window, &image);
    return {};
}

Variable clearBuffer(const BindingCall& call) {
    Runtime& runtime = runtimeOf(call);
    call.require(3);
    const auto channel = [&](std::size_t index, std::string_view name) {
        return static_cast<unsigned char>(static_cast<std::uint32_t>(call.integer(index, name)));
    };
    const unsigned char r = channel(0, "r");
    const unsigned char g = channel(1, "g");
    const unsigned char b = channel(2, "b");
    if (runtime.window) vh_clearWindow(runtime.window, r, g, b);
    return {};
}

Variable setFullscreen(const BindingCall& call) {
    vh_setFullscreen(runtimeOf(call).window, call.condition(0));
    return {};
}

Variable isFullscreen(const BindingCall& call) {
    return Variable::boolean(vh_isFullscreen(runtimeOf(call).window));
}

// Holds for windows to come, too.
Variable setScaling(const BindingCall& call) {
    constexpr std::pair<std::string_view, Scaling> modes[] = {
        {"nearest", Scaling::nearest}, {"smooth", Scaling::smooth}, {"whole", Scaling::whole}};
    const std::string& name = call.text(0, "mode");
    const auto* mode =
        std::ranges::find(modes, std::string_view(name), &std::pair<std::string_view, Scaling>::first);
    if (mode == std::end(modes)) call.fail("mode must be nearest, smooth, or whole");
    runtimeOf(call).scaling = mode->second;
    vh_setScaling(runtimeOf(call).window, mode->second);
    return {};
}

// The optional `language` is a code such as "de".
Variable speak(const BindingCall& call) {
    const std::string& text = call.text(0, "text");
    return Variable::boolean(vh_speak(text, call.count() > 1 ? call.text(1, "language") : ""));
}

Variable copyText(const BindingCall& call) {
    return Variable::boolean(vh_copyText(runtimeOf(call).window, call.text(0, "text").c_str()));
}

Variable getWindow(const BindingCall& call) {
    Runtime& runtime = runtimeOf(call);
    PlushImage* captured = runtime.window ? vh_captureWindow(runtime.window) : nullptr;
    if (!captured) return {};
    livePlushImages.insert(captured);
    return Variable::pointer(captured);
}

Variable setTouchBarButton(const BindingCall& call) {
    Runtime& runtime = runtimeOf(call);
    call.require(2);
    const std::int32_t button = call.integer(0, "button");
    vh_setTouchBarButtonText(runtime.window, button, call.text(1, "text").c_str());
    return {};
}

Variable setTouchBarButtonImage(const BindingCall& call) {
    Runtime& runtime = runtimeOf(call);
    call.require(2);
    const std::int32_t button = call.integer(0, "button");
    vh_setTouchBarButtonImage(runtime.window, button, &imageArgument(call, 1, "image"));
    return {};
}

Variable updateInput(const BindingCall& call) {
    publishInputGlobals(runtimeOf(call));
    return {};
}

// Names in the order in which they were pressed.
Variable presses(const BindingCall& call) {
    Variable list = Variable::makeArray();
    while (const char* name = vh_takePress(runtimeOf(call).window))
        list.items().push_back(Variable::text(name));
    return list;
}

Variable forceUpdate(const BindingCall& call) {
    vh_updateWindow(runtimeOf(call).window);
    return {};
}

Variable clearTouchBarButtons(const BindingCall& call) {
    vh_clearTouchBar(runtimeOf(call).window);
    return {};
}

Variable checkClose(const BindingCall& call) {
    return Variable::boolean(vh_windowShouldClose(runtimeOf(call).window));
}

Variable killWindow(const BindingCall& call) {
    runtimeOf(call).destroyWindow();
    return {};
}

Variable registerSailfishButton(const BindingCall& call) {
    vh_sailfish_register_key(call.integer(0, "key"));
    return {};
}

Variable sailfishOrientation(const BindingCall&) {
    return Variable::integer(vh_sailfish_left_orientation());
}

constexpr BindingRow metalRows[] = {
    {"renderImage", renderImage},
    {"updateInput", updateInput},
    {"forceUpdate", forceUpdate},
    {"getTitle", getName},
    {"getWindow", getWindow},
    {"clearTouchBar", clearTouchBarButtons},
    {"setTouchBarButton", setTouchBarButton},
    {"setTouchBarButtonImage", setTouchBarButtonImage},
    {"setTitle", renameWindow},
    {"clearBuffer", clearBuffer},
    {"checkClose", checkClose},
    {"killWindow", killWindow},
    {"spawnWindow", spawnWindow},
    {"presses", presses},
    {"setFullscreen", setFullscreen},
    {"isFullscreen", isFullscreen},
    {"setScaling", setScaling},
    {"speak", speak},
    {"copyText", copyText},
};
constexpr BindingRow sailfishRows[] = {{"key", registerSailfishButton}, {"orientation", sailfishOrientation}};

}  // namespace

std::span<const BindingRow> metalBindings() {
    return metalRows;
}
std::span<const BindingRow> sailfishBindings() {
    return sailfishRows;
}

}  // namespace kelmora
