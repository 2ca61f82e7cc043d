#include <algorithm>
#include <array>

#include "base/kept_place.h"
#include "bindings/image_arguments.h"
#include "bindings/modules.h"
#include "codec/pmg_file.h"
#include "image/image_registry.h"
#include "image/row_workers.h"
#include "script/vesper_script.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

constexpr const char* invalidImage = "image must be a valid image";

Variable sizeValue(std::int32_t value) {
    return Variable::integer(value);
}

PlushImage* imageHandle(const BindingCall& call, std::size_t index) {
    return static_cast<PlushImage*>(call.pointer(index, "image"));
}

// The registry's check: the handle is one that scripts were given and did not kill.
PlushImage& strongImage(const BindingCall& call) {
    PlushImage* image = imageHandle(call, 0);
    if (!cleanImage(image)) call.fail(invalidImage);
    return *image;
}

struct Point {
    std::int32_t x;
    std::int32_t y;
};

Point pointInside(const BindingCall& call, const PlushImage& image) {
    const Point point{call.integer(1, "x"), call.integer(2, "y")};
    if (point.x < 0 || point.y < 0 || point.x >= image.width || point.y >= image.height)
        call.fail("pixel coordinates are outside the image");
    return point;
}

unsigned char lowByte(const BindingCall& call, std::size_t index, std::string_view name) {
    return static_cast<unsigned char>(static_cast<std::uint32_t>(call.integer(index, name)));
}

unsigned char channel(const BindingCall& call, std::size_t index, std::string_view name) {
    const std::int32_t value = call.integer(index, name);
    if (value < 0 || value > 255) call.fail(std::string(name) + " must be between 0 and 255");
    return static_cast<unsigned char>(value);
}

Variable createImage(const BindingCall& call) {
    call.require(6);
    const std::int32_t width = call.integer(0, "width");
    const std::int32_t height = call.integer(1, "height");
    if (std::int64_t{std::max(width, 1)} * std::max(height, 1) > maximumPixels)
        call.fail("the image is too large");
    return Variable::pointer(createSolidColourImage(width, height, lowByte(call, 2, "r"),
                                                    lowByte(call, 3, "g"), lowByte(call, 4, "b"),
                                                    lowByte(call, 5, "a")));
}

Variable killImage(const BindingCall& call) {
    killPlushImage(imageHandle(call, 0));
    return {};
}

Variable checkImage(const BindingCall& call) {
    return Variable::boolean(cleanImage(imageHandle(call, 0)));
}

Variable imageSize(const BindingCall& call) {
    const PlushImage& image = imageArgument(call, 0, "image");
    return returnValues({sizeValue(image.width), sizeValue(image.height)});
}

Variable getImagePixel(const BindingCall& call) {
    call.require(3);
    const PlushImage& image = strongImage(call);
    const Point point = pointInside(call, image);
    const unsigned char* pixel = getPixel(&image, point.x, point.y);
    return returnValues({Variable::integer(pixel[0]), Variable::integer(pixel[1]),
                         Variable::integer(pixel[2]), Variable::integer(pixel[3])});
}

Variable setImagePixel(const BindingCall& call) {
    call.require(7);
    PlushImage& image = strongImage(call);
    const Point point = pointInside(call, image);
    const unsigned char r = channel(call, 3, "r");
    const unsigned char g = channel(call, 4, "g");
    const unsigned char b = channel(call, 5, "b");
    setPixel(&image, point.x, point.y, r, g, b, channel(call, 6, "a"));
    return {};
}

Variable mirrorImage(const BindingCall& call) {
    call.require(2);
    PlushImage& image = imageArgument(call, 0, "image");
    mirrorPlushImage(&image, call.condition(1));
    return {};
}

Variable loadPNG(const BindingCall& call) {
    const std::string path = call.path(0);
    int width = 0;
    int height = 0;
    PixelMemory pixels(vh_load_png(path.c_str(), &width, &height));
    if (!pixels) call.fail("failed to load image: " + path);
    PlushImage* image = adoptPixels(std::move(pixels), width, height);
    return returnValues({Variable::pointer(image), sizeValue(height), sizeValue(width)});
}

Variable saveImage(const BindingCall& call) {
    call.require(2);
    const std::string path = call.path(0);
    const PlushImage& image = imageArgument(call, 1, "image");
    // Scripts are not told; those who ask use savePlushImage.
    static_cast<void>(vh_save_png(path.c_str(), image.pixels, image.width, image.height));
    return {};
}

Variable saveImageRaw(const BindingCall& call) {
    call.require(2);
    PlushImage* image = imageHandle(call, 0);
    const std::string path = placeOf(call.text(1, "path"));
    return Variable::boolean(livePlushImages.contains(image) && savePlushImage(image, path.c_str()));
}

Variable loadImageRaw(const BindingCall& call) {
    PlushImage* image = loadPlushImage(placeOf(call.text(0, "path")).c_str());
    if (!image) return returnValues({Variable(), sizeValue(0), sizeValue(0)});
    return returnValues({Variable::pointer(image), sizeValue(image->width), sizeValue(image->height)});
}

Variable insertReflectionBinding(const BindingCall& call) {
    call.require(2);
    PlushImage& image = imageArgument(call, 0, "image");
    insertReflection(image, imageArgument(call, 1, "reflectmap"));
    return {};
}

Variable setThreading(const BindingCall& call) {
    threadCount = call.integer(0, "count");
    return {};
}

constexpr BindingRow rows[] = {
    {"threads", setThreading},
    {"createImage", createImage},
    {"checkImage", checkImage},
    {"getPixel", getImagePixel},
    {"setPixel", setImagePixel},
    {"saveImage", saveImage},
    {"mirrorImage", mirrorImage},
    {"killImage", killImage},
    {"imageSize", imageSize},
    {"insertReflection", insertReflectionBinding},
    {"loadPNG", loadPNG},
    {"savePlushImage", saveImageRaw},
    {"loadPlushImage", loadImageRaw},
};

}  // namespace

std::span<const BindingRow> imageBindings() {
    return rows;
}

}  // namespace kelmora
