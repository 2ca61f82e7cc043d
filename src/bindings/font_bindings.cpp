#include "bindings/modules.h"
#include "image/image_registry.h"
#include "script/vesper_script.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

Variable handleValue(void* handle) {
    return handle ? Variable::pointer(handle) : Variable();
}

float sizeArgument(const BindingCall& call, std::size_t index) {
    return static_cast<float>(call.number(index, "size"));
}

Variable loadFont(const BindingCall& call) {
    call.require(2);
    const std::string path = call.path(0);
    return handleValue(vh_font_load(path.c_str(), sizeArgument(call, 1)));
}

Variable resizeFont(const BindingCall& call) {
    call.require(2);
    void* font = call.pointer(0, "font");
    vh_font_resize(font, sizeArgument(call, 1));
    return {};
}

Variable renderText(const BindingCall& call) {
    call.require(6);
    const std::string& text = call.text(0, "text");
    void* font = call.pointer(1, "font");
    const int r = call.integer(2, "r");
    const int g = call.integer(3, "g");
    const int b = call.integer(4, "b");
    PlushImage* image = vh_font_render(font, text.c_str(), r, g, b, call.number(5, "a"));
    if (image) livePlushImages.insert(image);
    return handleValue(image);
}

// What renderText would make of it.
Variable textSize(const BindingCall& call) {
    call.require(2);
    const std::string& text = call.text(0, "text");
    int width = 0;
    int height = 0;
    if (!vh_font_text_size(call.pointer(1, "font"), text.c_str(), &width, &height)) return {};
    return returnValues({Variable::integer(width), Variable::integer(height)});
}

Variable wrapText(const BindingCall& call) {
    call.require(3);
    const std::string& text = call.text(0, "text");
    void* font = call.pointer(1, "font");
    const auto wrapped = vh_font_wrap(font, text.c_str(), call.integer(2, "width"));
    return wrapped ? Variable::text(*wrapped) : Variable();
}

Variable killFont(const BindingCall& call) {
    vh_font_free(call.pointer(0, "font"));
    return {};
}

constexpr BindingRow rows[] = {
    {"renderText", renderText}, {"resizeFont", resizeFont}, {"killFont", killFont},
    {"loadFont", loadFont},     {"textSize", textSize},     {"wrapText", wrapText},
};

}  // namespace

std::span<const BindingRow> fontBindings() {
    return rows;
}

}  // namespace kelmora
