#include <cstdlib>
#include <memory>

#include "host/runtime.h"
#include "platform/shim.h"
#include "plush/live_images.h"
#include "plush/plush_bindings.h"
#include "script/binding.h"

namespace kelmora {
namespace {

// spawnWindow(title, width, height): true when there is a window afterwards. An old one goes first.
Variable spawnWindow(Runtime& runtime, const BindingCall& call) {
    call.require(3);
    const std::string title = call.text(0, "title");
    const std::int32_t width = call.integer(1, "width");
    const std::int32_t height = call.integer(2, "height");
    runtime.destroyWindow();
    runtime.windowTitle = title;
    runtime.window = vh_createWindow(title.c_str(), width, height);
    return Variable::boolean(runtime.window != nullptr);
}

Variable renameWindow(Runtime& runtime, const BindingCall& call) {
    runtime.windowTitle = call.text(0, "title");
    vh_setWindowTitle(runtime.window, runtime.windowTitle.c_str());
    return {};
}

Variable getName(Runtime& runtime) {
    const std::unique_ptr<char, decltype(&std::free)> title(vh_getWindowTitle(runtime.window), &std::free);
    return title ? Variable::text(title.get()) : Variable();
}

Variable renderImage(Runtime& runtime, const BindingCall& call) {
    const PlushImage& image = weakImage(call, 0, "image");
    if (runtime.window) vh_pushImage(runtime.window, &image);
    return {};
}

Variable clearBuffer(Runtime& runtime, const BindingCall& call) {
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

Variable getWindow(Runtime& runtime) {
    PlushImage* captured = runtime.window ? vh_captureWindow(runtime.window) : nullptr;
    if (!captured) return {};
    livePlushImages.insert(captured);
    return Variable::pointer(captured);
}

Variable setTouchBarButton(Runtime& runtime, const BindingCall& call) {
    call.require(2);
    const std::int32_t button = call.integer(0, "button");
    vh_setTouchBarButtonText(runtime.window, button, call.text(1, "text").c_str());
    return {};
}

Variable setTouchBarButtonImage(Runtime& runtime, const BindingCall& call) {
    call.require(2);
    const std::int32_t button = call.integer(0, "button");
    vh_setTouchBarButtonImage(runtime.window, button, &weakImage(call, 1, "image"));
    return {};
}

}  // namespace

Variable makeMetalModule(Runtime& runtime) {
    Runtime* const r = &runtime;
    return makeModule(
        "Metal",
        {
            {"renderImage", [r](const BindingCall& call) { return renderImage(*r, call); }},
            {"updateInput",
             [r](const BindingCall&) {
                 publishInputGlobals(*r);
                 return Variable();
             }},
            {"forceUpdate",
             [r](const BindingCall&) {
                 vh_updateWindow(r->window);
                 return Variable();
             }},
            {"getTitle", [r](const BindingCall&) { return getName(*r); }},
            {"getWindow", [r](const BindingCall&) { return getWindow(*r); }},
            {"clearTouchBar",
             [r](const BindingCall&) {
                 vh_clearTouchBar(r->window);
                 return Variable();
             }},
            {"setTouchBarButton", [r](const BindingCall& call) { return setTouchBarButton(*r, call); }},
            {"setTouchBarButtonImage",
             [r](const BindingCall& call) { return setTouchBarButtonImage(*r, call); }},
            {"setTitle", [r](const BindingCall& call) { return renameWindow(*r, call); }},
            {"clearBuffer", [r](const BindingCall& call) { return clearBuffer(*r, call); }},
            {"checkClose",
             [r](const BindingCall&) { return Variable::boolean(vh_windowShouldClose(r->window)); }},
            {"killWindow",
             [r](const BindingCall&) {
                 r->destroyWindow();
                 return Variable();
             }},
            {"spawnWindow", [r](const BindingCall& call) { return spawnWindow(*r, call); }},
        });
}

Variable makeSailfishModule() {
    return makeModule(
        "Sailfish",
        {
            {"key",
             [](const BindingCall& call) {
                 vh_sailfish_register_key(call.integer(0, "key"));
                 return Variable();
             }},
            {"orientation",
             [](const BindingCall&) { return Variable::integer(vh_sailfish_left_orientation()); }},
        });
}

}  // namespace kelmora
