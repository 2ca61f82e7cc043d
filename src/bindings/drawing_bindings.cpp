#include <algorithm>

#include "bindings/image_arguments.h"
#include "bindings/modules.h"
#include "plush/drawing.h"

namespace kelmora {
namespace {

PlushColour colourArgument(const BindingCall& call, std::size_t first) {
    const auto channel = [&](std::size_t offset, std::string_view name) {
        return static_cast<unsigned char>(std::clamp(call.integer(first + offset, name), 0, 255));
    };
    PlushColour colour;
    colour.r = channel(0, "r");
    colour.g = channel(1, "g");
    colour.b = channel(2, "b");
    colour.a = channel(3, "a");
    return colour;
}

BoxShape boxArgument(const BindingCall& call) {
    BoxShape box;
    box.x = call.integer(1, "x");
    box.y = call.integer(2, "y");
    box.width = call.integer(3, "width");
    box.height = call.integer(4, "height");
    return box;
}

Variable fillRect(const BindingCall& call) {
    call.require(9);
    const PlushImage& image = imageArgument(call, 0, "image");
    const BoxShape box = boxArgument(call);
    fillBox(image, box, colourArgument(call, 5));
    return {};
}

Variable fillRoundBox(const BindingCall& call) {
    call.require(10);
    const PlushImage& image = imageArgument(call, 0, "image");
    BoxShape box = boxArgument(call);
    box.radius = call.integer(5, "radius");
    fillBox(image, box, colourArgument(call, 6));
    return {};
}

Variable drawRoundBox(const BindingCall& call) {
    call.require(11);
    const PlushImage& image = imageArgument(call, 0, "image");
    BoxShape box = boxArgument(call);
    box.radius = call.integer(5, "radius");
    const std::int32_t thickness = call.integer(6, "thickness");
    outlineBox(image, box, thickness, colourArgument(call, 7));
    return {};
}

Variable drawLineBinding(const BindingCall& call) {
    call.require(10);
    const PlushImage& image = imageArgument(call, 0, "image");
    LineShape line;
    line.x1 = call.integer(1, "x1");
    line.y1 = call.integer(2, "y1");
    line.x2 = call.integer(3, "x2");
    line.y2 = call.integer(4, "y2");
    line.thickness = call.number(5, "thickness");
    drawLine(image, line, colourArgument(call, 6));
    return {};
}

constexpr BindingRow rows[] = {
    {"fillRect", fillRect},
    {"fillBox", fillRoundBox},
    {"drawBox", drawRoundBox},
    {"drawLine", drawLineBinding},
};

}  // namespace

std::span<const BindingRow> drawingBindings() {
    return rows;
}

}  // namespace kelmora
