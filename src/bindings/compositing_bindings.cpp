#include "bindings/image_arguments.h"
#include "bindings/modules.h"
#include "plush/blit.h"
#include "plush/skew.h"

namespace kelmora {
namespace {

struct Pictures {
    PlushImage& target;
    const PlushImage& image;
};

void requireExactly(const BindingCall& call, std::size_t count, std::string_view expectation) {
    if (call.count() != count) call.fail(expectation);
}

// Both handles are fetched before either is checked.
Pictures picturesOf(const BindingCall& call) {
    const void* target = call.pointer(0, "target");
    const void* image = call.pointer(1, "image");
    return {liveImage(call, target, "target"), liveImage(call, image, "image")};
}

float single(const BindingCall& call, std::size_t index, std::string_view name) {
    return static_cast<float>(call.number(index, name));
}

Variable blitImageBinding(const BindingCall& call) {
    requireExactly(call, 7, "expected 7 arguments (target, image, x, y, blend, scale, rotation)");
    const Pictures pictures = picturesOf(call);
    const std::int32_t x = call.integer(2, "x");
    Blit blit{pictures.target, pictures.image, x, call.integer(3, "y")};
    // An image off the target is no error, whatever the other arguments are.
    if (!reachesTarget(blit)) return {};
    blit.blend = call.condition(4);
    blit.scale = single(call, 5, "scale");
    blit.rotation = single(call, 6, "rotation");
    blitImage(blit);
    return {};
}

Variable blitImageRectBinding(const BindingCall& call) {
    requireExactly(call, 10,
                   "expected 10 arguments (target, image, sx, sy, width, height, x, y, blend, scale)");
    const Pictures pictures = picturesOf(call);
    RectBlit blit{pictures.target, pictures.image};
    blit.sourceX = call.integer(2, "sx");
    blit.sourceY = call.integer(3, "sy");
    blit.width = call.integer(4, "width");
    blit.height = call.integer(5, "height");
    blit.x = call.integer(6, "x");
    blit.y = call.integer(7, "y");
    blit.blend = call.condition(8);
    blit.scale = single(call, 9, "scale");
    blitImageRect(blit);
    return {};
}

Variable skewBinding(const BindingCall& call) {
    call.require(10);
    PlushImage* input = findLiveImage(call.pointer(0, "input"));
    PlushImage* output = findLiveImage(call.pointer(1, "output"));
    const std::int32_t ltx = call.integer(2, "ltx");
    const std::int32_t lty = call.integer(3, "lty");
    const std::int32_t rtx = call.integer(4, "rtx");
    const std::int32_t rty = call.integer(5, "rty");
    const std::int32_t lbx = call.integer(6, "lbx");
    const std::int32_t lby = call.integer(7, "lby");
    const std::int32_t rbx = call.integer(8, "rbx");
    const std::int32_t rby = call.integer(9, "rby");
    skewImage(ltx, lty, rtx, rty, lbx, lby, rbx, rby, input, output);
    return {};
}

constexpr BindingRow rows[] = {
    {"skew", skewBinding},
    {"blitImage", blitImageBinding},
    {"blitImageRect", blitImageRectBinding},
};

}  // namespace

std::span<const BindingRow> compositingBindings() {
    return rows;
}

}  // namespace kelmora
